// What the tests of the request builder stand on.
#ifndef TESTS_UNIT_GENERATOR_GENERATOR_RIG_H
#define TESTS_UNIT_GENERATOR_GENERATOR_RIG_H

#include <gtest/gtest.h>
#include <string>

#include "generator/Generator.h"
#include "http/Communications.h"
#include "support/CatchAbort.h"
#include "support/Documents.h"
#include "support/FailingMemory.h"
#include "support/GoldenDocument.h"
#include "support/LogSpy.h"
#include "support/Memory.h"
#include "support/RecordingStore.h"
#include "support/ScriptedTransport.h"
#include "support/TestFolder.h"

namespace airsync_test {

using namespace AIRSYNC_STACK;

/// A generator, its storage and the folder.
class GeneratorRig : public testing::Test {
 protected:
  GeneratorRig() {
    FailingMemory::Reset();
    Fill(notifyKey.text, "guid-1");
    blocksBefore = FailingMemory::LiveBlocks();
  }

  ~GeneratorRig() override {
    generator.ForgetTrackedMemory();
    AdapterFreeAll();
    for (int source = 0; source < 6; ++source) {
      Log::SetLevel(static_cast<AS_LOG_MESSAGE_SOURCE_T>(source), AS_LOG_LEVEL_INFO, nullptr);
    }
  }

  /// The next request, whose tree the caller destroys or hands to Written.
  sml_element* NextRequest() {
    status = GENERATOR_NOT_RUN;
    return generator.Sync(&comms, &folder, notifyKey, status);
  }

  /// The next request's tree as a line.
  std::string NextOutline() {
    sml_element* const request = NextRequest();
    std::string outline = Outline(request);
    SE_Destroy(request);
    return outline;
  }

  /// The same from Commands on; empty when there are none.
  std::string NextCommands() {
    sml_element* const request = NextRequest();
    const sml_element* const commands = SE_GetChild(request, "Collections/Collection/Commands");
    std::string outline = commands == nullptr ? "" : Outline(commands);
    SE_Destroy(request);
    return outline;
  }

  void HandOut(AS_CHANGE_KIND_T kind, const std::string& id, UINT32 clientId, void* record) {
    LocalChange change;
    change.kind = kind;
    change.id = id;
    change.clientId = clientId;
    change.record = record;
    store.HandOut(change);
  }

  FOLDER_INFO folder = FolderInUse();
  _SYNC_KEY notifyKey = {};
  GENERATOR_STATUS status = GENERATOR_NOT_RUN;
  RecordingStore store;
  ScriptedTransport transport;
  Communications comms{SERVER_INFO(), &transport, nullptr};
  Generator generator{&store, ENCODING_WBXML, Log::getInstance()};
  std::size_t blocksBefore = 0;
};

}  // namespace airsync_test

#endif
