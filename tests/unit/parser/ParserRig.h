// What the tests of the response processor stand on.
#ifndef TESTS_UNIT_PARSER_PARSER_RIG_H
#define TESTS_UNIT_PARSER_PARSER_RIG_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "api/AirSync.h"
#include "parser/Parser.h"
#include "support/CatchAbort.h"
#include "support/Documents.h"
#include "support/FailingMemory.h"
#include "support/GoldenDocument.h"
#include "support/LogSpy.h"
#include "support/Memory.h"
#include "support/RecordingStore.h"
#include "support/TestFolder.h"

namespace airsync_test {

using namespace AIRSYNC_STACK;

typedef std::vector<Node> Nodes;
typedef std::vector<std::string> Lines;

/// A parser, its storage and the folder.
class ParserRig : public testing::Test {
 protected:
  static const UINT8 kAirSyncPage = 0;
  static const UINT8 kFolderPage = 7;

  ParserRig() {
    FailingMemory::Reset();
    blocksBefore = FailingMemory::LiveBlocks();
  }

  ~ParserRig() override {
    AdapterFreeAll();
    for (int source = 0; source < 6; ++source) {
      Log::SetLevel(static_cast<AS_LOG_MESSAGE_SOURCE_T>(source), AS_LOG_LEVEL_INFO, nullptr);
    }
  }

  /// A Sync response with a collection that fits the folder, its key "{7}13", and more children in it.
  static Node Answer(const Nodes& more) {
    Nodes children = {{"SyncKey", "{7}13"}, {"Status", "1"}, {"CollectionId", "2:1"}, {"Class", "Contacts"}};
    children.insert(children.end(), more.begin(), more.end());
    return AnswerOf(children);
  }
  static Node AnswerOf(const Nodes& children) {
    return {"Sync", Nodes{{"Collections", Nodes{{"Collection", children}}}}};
  }
  static Node Commands(const Nodes& commands) { return {"Commands", commands}; }
  static Node Responses(const Nodes& responses) { return {"Responses", responses}; }

  /// A server command with an item that has a first name.
  static Node Item(const std::string& kind, const std::string& id) {
    return {kind, Nodes{{"ServerId", id}, {"ApplicationData", Nodes{{"FirstName", "Ada"}}}}};
  }
  static Node Deleted(const std::string& id) { return {"Delete", Nodes{{"ServerId", id}}}; }

  /// Runs `body` on the tree inside a frame. Afterwards nothing that it allocated is left.
  template <typename Body>
  SYNC_RESULT Run(sml_element* tree, const Body& body) {
    const SYNC_RESULT result = CatchAbort([&]() { body(tree); });
    if (result == 0) {
      SE_Destroy(tree);
    } else {
      parser.ForgetTrackedMemory();
    }
    EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore);
    return result;
  }

  SYNC_RESULT SyncTree(sml_element* tree) {
    return Run(tree, [this](sml_element* root) { parser.Sync(root, &store, &folder, status); });
  }
  SYNC_RESULT Sync(const Node& answer) { return SyncTree(Tree(answer, kAirSyncPage)); }
  SYNC_RESULT SyncGolden(const std::string& name) { return SyncTree(ReadTree(GoldenDocument(name))); }

  SYNC_RESULT FolderSyncTree(sml_element* tree) {
    return Run(tree, [this](sml_element* root) { parser.FolderSync(root, &store, key); });
  }
  SYNC_RESULT FolderSync(const Node& answer) { return FolderSyncTree(Tree(answer, kFolderPage)); }

  /// Requests a cancel at the end of the storage's n-th call.
  void CancelAtCall(std::size_t n) {
    store.OnCall([this, n](const StoreCall&) {
      if (store.Calls().size() == n) AirSync::getInstance()->CancelSync();
    });
  }

  FOLDER_INFO folder = FolderInUse();
  RecordingStore store;
  Parser parser{Log::getInstance()};
  Parser::PARSER_STATUS status = Parser::PARSER_NOT_RUN;
  _SYNC_KEY key = {};
  std::size_t blocksBefore = 0;
};

}  // namespace airsync_test

#endif
