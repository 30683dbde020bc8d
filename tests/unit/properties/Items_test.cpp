// Items on their way: what the generator writes, sent and received as a document and read by the parser, is
// the same item.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "Generators.h"
#include "api/CalendarFields.h"
#include "api/ContactFields.h"
#include "generator/Generator.h"
#include "http/Communications.h"
#include "parser/Parser.h"
#include "support/CatchAbort.h"
#include "support/Documents.h"
#include "support/FailingMemory.h"
#include "support/Memory.h"
#include "support/RecordingStore.h"
#include "support/ScriptedTransport.h"
#include "support/TestFolder.h"

namespace airsync_test {
namespace {

using namespace AIRSYNC_STACK;

// The document of the item's Add.
std::string Sent(void* record, FOLDER_INFO& folder) {
  RecordingStore store;
  LocalChange change;
  change.record = record;
  store.HandOut(change);
  ScriptedTransport transport;
  Communications comms(SERVER_INFO(), &transport, nullptr);
  Generator generator(&store, ENCODING_WBXML, nullptr);
  GENERATOR_STATUS status = GENERATOR_NOT_RUN;
  sml_element* const request = generator.Sync(&comms, &folder, {}, status);
  const sml_element* const add = SE_GetChild(request, "Collections/Collection/Commands/Add");
  RC_ASSERT(add != nullptr);
  const std::string document = DocumentOf(add);
  SE_Destroy(request);
  return document;
}

// The call that an Add from the server with the same data makes.
StoreCall Received(const std::string& document, FOLDER_INFO& folder) {
  typedef std::vector<Node> Nodes;
  sml_element* const answer =
      Tree({"Sync", Nodes{{"Collections", Nodes{{"Collection", Nodes{{"SyncKey", "2"}, {"Commands"}}}}}}}, 0);
  sml_element* const add = ReadTree(document);
  SE_AddChild(SE_GetChild(answer, "Collections/Collection/Commands"), add);
  SE_AddChild(add, SE_New("ServerId", "1"));
  RecordingStore store;
  store.dataType = folder.dataType;
  Parser parser(nullptr);
  Parser::PARSER_STATUS status = Parser::PARSER_NOT_RUN;
  const SYNC_RESULT result = CatchAbort([&]() { parser.Sync(answer, &store, &folder, status); });
  RC_ASSERT(result == 0U);
  SE_Destroy(answer);
  RC_ASSERT(store.Calls().size() == 2U);
  return store.Calls()[0];
}

// What a series lacks it takes from the first of its exceptions that has it; and every exception says whether
// it is deleted.
void CompleteAsRead(ItemFields& fields, int exceptions) {
  for (const AS_EXCEPTION_FIELD_T& field : AS_EXCEPTION_FIELDS) {
    const std::string name = field.name;
    if (name == "ExceptionStartTime" || name == "Deleted") continue;
    for (int i = 0; i < exceptions; ++i) {
      const auto found = fields.find("Exceptions[" + std::to_string(i) + "]." + name);
      if (found != fields.end()) fields.emplace(name, found->second);
    }
  }
  for (int i = 0; i < exceptions; ++i) {
    const std::string part = "Exceptions[" + std::to_string(i) + "]";
    fields.erase(part);
    fields.emplace(part + ".Deleted", "0");
  }
}

RC_GTEST_PROP(ItemProperties, AnEventArrivesAsItLeft, ()) {
  FailingMemory::Reset();
  const std::size_t before = FailingMemory::LiveBlocks();
  ItemMaker maker;
  AS_CALENDAR_T event = {};
  AS_RECURRENCE_T rule = {};
  std::vector<AS_EXCEPTION_T> exceptions(static_cast<std::size_t>(*rc::gen::inRange(0, 4)));
  maker.Fill(event, AS_CALENDAR_FIELDS);
  event.BodyTruncated = nullptr;  // it is never sent
  if (*rc::gen::arbitrary<bool>()) {
    maker.Fill(rule, AS_RECURRENCE_FIELDS);
    event.Recurrence = &rule;
  }
  for (AS_EXCEPTION_T& exception : exceptions) maker.Fill(exception, AS_EXCEPTION_FIELDS);
  event.Exceptions = exceptions.data();
  event.ExceptionCount = static_cast<INT32>(exceptions.size());

  FOLDER_INFO folder = FolderInUse();
  folder.dataType = DATATYPE_CALENDAR;
  ItemFields expected = CopyEvent(event);
  CompleteAsRead(expected, event.ExceptionCount);
  RC_ASSERT(Received(Sent(&event, folder), folder).event == expected);
  RC_ASSERT(FailingMemory::LiveBlocks() == before);
}

RC_GTEST_PROP(ItemProperties, AContactArrivesAsItLeft, ()) {
  FailingMemory::Reset();
  const std::size_t before = FailingMemory::LiveBlocks();
  ItemMaker maker;
  AS_CONTACT_T contact = {};
  maker.Fill(contact, AS_CONTACT_FIELDS);
  contact.BodySize = nullptr;  // neither is ever sent
  contact.BodyTruncated = nullptr;

  FOLDER_INFO folder = FolderInUse();
  RC_ASSERT(Received(Sent(&contact, folder), folder).contact == CopyContact(contact));
  RC_ASSERT(FailingMemory::LiveBlocks() == before);
}

}  // namespace
}  // namespace airsync_test
