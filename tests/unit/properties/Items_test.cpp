// Items on their way: what the generator writes is the same item when it is read from its bytes alone, and
// when it is sent and received as a document and read by the parser.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "Generators.h"
#include "WireItems.h"
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

// The request that brings this change of the item to the server.
sml_element* RequestOf(AS_CHANGE_KIND_T kind, void* record, FOLDER_INFO& folder) {
  RecordingStore store;
  LocalChange change;
  change.kind = kind;
  change.id = "2:1";
  change.record = record;
  store.HandOut(change);
  ScriptedTransport transport;
  Communications comms(SERVER_INFO(), &transport, nullptr);
  Generator generator(&store, ENCODING_WBXML, nullptr);
  GENERATOR_STATUS status = GENERATOR_NOT_RUN;
  sml_element* const request = generator.Sync(&comms, &folder, {}, status);
  RC_ASSERT(status == GENERATOR_DONE);
  return request;
}

// The document of the item's Add.
std::string Sent(void* record, FOLDER_INFO& folder) {
  sml_element* const request = RequestOf(AS_CHANGE_ADD, record, folder);
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

// Every exception that is sent says whether it is deleted.
void CompleteAsSent(ItemFields& fields, int exceptions) {
  for (int i = 0; i < exceptions; ++i) {
    const std::string part = "Exceptions[" + std::to_string(i) + "]";
    fields.erase(part);
    fields.emplace(part + ".Deleted", "0");
  }
}

// What a series lacks it takes from the first of its exceptions that has it.
void CompleteAsRead(ItemFields& fields, int exceptions) {
  for (const AS_EXCEPTION_FIELD_T& field : AS_EXCEPTION_FIELDS) {
    const std::string name = field.name;
    if (name == "ExceptionStartTime" || name == "Deleted") continue;
    for (int i = 0; i < exceptions; ++i) {
      const auto found = fields.find("Exceptions[" + std::to_string(i) + "]." + name);
      if (found != fields.end()) fields.emplace(name, found->second);
    }
  }
  CompleteAsSent(fields, exceptions);
}

// An event without what is never sent.
struct AnyEvent {
  AnyEvent() : exceptions(static_cast<std::size_t>(*rc::gen::inRange(0, 4))) {
    maker.Fill(record, AS_CALENDAR_FIELDS);
    record.BodyTruncated = nullptr;
    if (*rc::gen::arbitrary<bool>()) {
      maker.Fill(rule, AS_RECURRENCE_FIELDS);
      record.Recurrence = &rule;
    }
    for (AS_EXCEPTION_T& exception : exceptions) maker.Fill(exception, AS_EXCEPTION_FIELDS);
    record.Exceptions = exceptions.data();
    record.ExceptionCount = static_cast<INT32>(exceptions.size());
    folder.dataType = DATATYPE_CALENDAR;
  }
  AnyEvent(const AnyEvent&) = delete;
  AnyEvent& operator=(const AnyEvent&) = delete;

  ItemMaker maker;
  AS_CALENDAR_T record = {};
  AS_RECURRENCE_T rule = {};
  std::vector<AS_EXCEPTION_T> exceptions;
  FOLDER_INFO folder = FolderInUse();
};

// A contact without what is never sent.
struct AnyContact {
  AnyContact() {
    maker.Fill(record, AS_CONTACT_FIELDS);
    record.BodySize = nullptr;
    record.BodyTruncated = nullptr;
  }
  AnyContact(const AnyContact&) = delete;
  AnyContact& operator=(const AnyContact&) = delete;

  ItemMaker maker;
  AS_CONTACT_T record = {};
  FOLDER_INFO folder = FolderInUse();
};

RC_GTEST_PROP(ItemProperties, AnEventIsOnTheWireAsItLeft, ()) {
  AnyEvent event;
  ItemFields expected = CopyEvent(event.record);
  CompleteAsSent(expected, event.record.ExceptionCount);
  RC_ASSERT(EventOnTheWire(Written(RequestOf(AS_CHANGE_ADD, &event.record, event.folder))) == expected);
  expected.erase("OrganizerName");
  expected.erase("OrganizerEmail");
  RC_ASSERT(EventOnTheWire(Written(RequestOf(AS_CHANGE_CHANGE, &event.record, event.folder))) == expected);
}

RC_GTEST_PROP(ItemProperties, AContactIsOnTheWireAsItLeft, ()) {
  AnyContact contact;
  const ItemFields expected = CopyContact(contact.record);
  for (const AS_CHANGE_KIND_T kind : {AS_CHANGE_ADD, AS_CHANGE_CHANGE}) {
    RC_ASSERT(ContactOnTheWire(Written(RequestOf(kind, &contact.record, contact.folder))) == expected);
  }
}

RC_GTEST_PROP(ItemProperties, AnEventArrivesAsItLeft, ()) {
  FailingMemory::Reset();
  const std::size_t before = FailingMemory::LiveBlocks();
  AnyEvent event;
  ItemFields expected = CopyEvent(event.record);
  CompleteAsRead(expected, event.record.ExceptionCount);
  RC_ASSERT(Received(Sent(&event.record, event.folder), event.folder).event == expected);
  RC_ASSERT(FailingMemory::LiveBlocks() == before);
}

RC_GTEST_PROP(ItemProperties, AContactArrivesAsItLeft, ()) {
  FailingMemory::Reset();
  const std::size_t before = FailingMemory::LiveBlocks();
  AnyContact contact;
  RC_ASSERT(Received(Sent(&contact.record, contact.folder), contact.folder).contact ==
            CopyContact(contact.record));
  RC_ASSERT(FailingMemory::LiveBlocks() == before);
}

// The reader by itself: an event whose fields are written down by hand, and a document that breaks off.
TEST(ItemProperties, TheReaderOfTheWireIsRight) {
  FullEvent event;
  FOLDER_INFO folder = FolderInUse();
  folder.dataType = DATATYPE_CALENDAR;
  ItemFields expected = FullEventFields();
  expected.erase("BodyTruncated");  // it is never sent
  EXPECT_EQ(EventOnTheWire(Written(RequestOf(AS_CHANGE_ADD, &event.record, folder))), expected);
  EXPECT_EQ(EventOnTheWire("\x03\x01"), (ItemFields{{"error", "the document has no end"}}));
}

}  // namespace
}  // namespace airsync_test
