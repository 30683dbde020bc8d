#include <utility>

#include "support/ForeignPages.h"
#include "support/FullContact.h"
#include "support/FullItems.h"
#include "support/GoldenDocument.h"
#include "torture/Scenario.h"

namespace torture {

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;

// The local items that go up. They live as long as the program: storage only lends them.
struct LocalItems {
  LocalItems() {
    for (const ContactText& text : kContactTexts) contact.*text.field = const_cast<char*>(text.value);
    large.Body = body.data();
    mail.Read = 1;
  }
  std::string body = std::string(6000, 'b');  // two of these need two requests
  AS_CONTACT_T contact = {};
  AS_CONTACT_T large = {};
  FullEvent event;
  AS_EMAIL_T mail = {};
};

LocalItems& Items() {
  static LocalItems& items = *new LocalItems;
  return items;
}

void UseFolder(ApiSession& session, DATATYPE dataType) {
  Put(session.folder.folder.serverId.text, "2:1");
  session.folder.dataType = dataType;
  session.store.dataType = dataType;
}

void SyncContacts(ApiSession& session) {
  UseFolder(session, DATATYPE_CONTACTS);
  session.store.HandOut({AS_CHANGE_ADD, "", 1, &Items().contact});
  session.store.HandOut({AS_CHANGE_DELETE, "2:9", 0, nullptr});
}

void SyncCalendar(ApiSession& session) {
  UseFolder(session, DATATYPE_CALENDAR);
  session.store.HandOut({AS_CHANGE_ADD, "", 2, &Items().event.record});
  session.store.HandOut({AS_CHANGE_CHANGE, "2:8", 0, &Items().event.record});
}

void SyncMail(ApiSession& session) {
  UseFolder(session, DATATYPE_EMAIL);
  session.store.HandOut({AS_CHANGE_CHANGE, "2:7", 0, &Items().mail});
  session.store.HandOut({AS_CHANGE_DELETE, "2:6", 0, nullptr});
}

// Two changes that do not fit into one request, items, answers to changes.
void SyncInTwoCycles(ApiSession& session) {
  session.store.HandOut({AS_CHANGE_ADD, "", 1, &Items().large});
  session.store.HandOut({AS_CHANGE_CHANGE, "5:2", 0, &Items().large});
}

const char* const kFirstCycle =
    "03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'k2' 00 01 52 03 '5' 00 01 4E 03 '1' 00 01 14"
    "  56 47 4D 03 '5:3' 00 01 5D 00 01 5E 03 'Ada' 00 01 55 56 03 'a' 00 01 56 03 'b' 00 01 01"
    "       48 03 '1960-01-02T00:00:00.000Z' 00 01 01 01 01"
    "  00 00 46 47 4C 03 '1' 00 01 4D 03 '5:4' 00 01 4E 03 '1' 00 01 01 01"
    "  01 01 01";
const char* const kSecondCycle =
    "03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'k3' 00 01 52 03 '5' 00 01"
    "  4E 03 '1' 00 01 46 48 4D 03 '5:2' 00 01 4E 03 '6' 00 01 01 01 01 01 01";
const char* const kHierarchyChanges =
    "03 01 6A 00 00 07 56 4C 03 '1' 00 01 52 03 'h2' 00 01 4E 57 03 '3' 00 01"
    "  4F 48 03 '11' 00 01 49 03 '12' 00 01 47 03 'Child' 00 01 4A 03 '12' 00 01 01"
    "  4F 48 03 '12' 00 01 49 03 '0' 00 01 47 03 'Parent' 00 01 4A 03 '12' 00 01 01"
    "  4F 48 03 '5' 00 01 49 03 '0' 00 01 47 03 'Contacts' 00 01 4A 03 '9' 00 01 01 01 01";

void Nothing(ApiSession&) {}

SYNC_RESULT RunSync(ApiSession& session) { return session.airSync->Sync(session.key, &session.folder); }
SYNC_RESULT RunFetch(ApiSession& session) { return session.airSync->Fetch(&session.folder, session.item); }

// 29 bytes of which those from offset 13 are the GUID below.
SYNC_RESULT RunNotifyRecv(ApiSession& session) {
  const char payload[] = "MDEyMzQ1Njc4OWFiYzMiEQBVRHdmiJmqu8zd7v8A";
  _SYNC_KEY guid = {"{00112233-4455-6677-8899-aabbccddeeff}"};
  return session.airSync->NotifyRecv(reinterpret_cast<const unsigned char*>(payload), sizeof payload - 1,
                                     guid);
}

SYNC_RESULT RunSetDeviceAddress(ApiSession& session) {
  return session.airSync->SetDeviceAddress(reinterpret_cast<const unsigned char*>("c1"), "Ada", "5550100");
}

SYNC_RESULT RunNotifyOff(ApiSession& session) {
  return session.airSync->NotifyEnable(nullptr, nullptr, nullptr, 0, session.carriers, session.carrierCount);
}

SYNC_RESULT RunAttachmentRaw(ApiSession& session) {
  return session.airSync->GetAttachment("a:1", session.attachment, 5, true);
}

SYNC_RESULT RunMailInOnePiece(ApiSession& session) {
  return session.airSync->SendMail(session.Message(), session.MessageLength(), true, false);
}

SYNC_RESULT RunConnect(ApiSession& session) { return session.airSync->Connect(); }

struct ClassOfItems {
  const char* name;      // in the scenario
  const char* document;  // in the names of documents
  void (*prepare)(ApiSession&);
  DATATYPE dataType;
};

constexpr ClassOfItems kClasses[] = {
    {"contacts", "contact", SyncContacts, DATATYPE_CONTACTS},
    {"calendar", "event", SyncCalendar, DATATYPE_CALENDAR},
    {"mail", "mail", SyncMail, DATATYPE_EMAIL},
};

Scenario Wbxml(std::string name, std::vector<std::string> answers, std::function<void(ApiSession&)> prepare,
               SYNC_RESULT (*run)(ApiSession&)) {
  return {std::move(name), ENCODING_WBXML, 0, std::move(answers), std::move(prepare), run};
}

// Documents go out as XML; what comes back is not read, and is malformed for that.
Scenario Xml(Scenario scenario) {
  scenario.name += "-xml";
  scenario.encoding = ENCODING_XML;
  scenario.expected = AS_RESULT_MALFORMED_DOCUMENT;
  scenario.answers = {""};
  return scenario;
}

void AddSynchronisations(std::vector<Scenario>& all) {
  for (const ClassOfItems& each : kClasses) {
    const std::string document = std::string("sync-answer-") + each.document + "-all-fields-";
    for (const char* kind : {"add", "change"}) {
      all.push_back(Wbxml(std::string("sync-") + each.name + "-" + kind, {GoldenDocument(document + kind)},
                          each.prepare, RunSync));
    }
    all.push_back(Xml(Wbxml(std::string("sync-") + each.name, {}, each.prepare, RunSync)));
    const auto fetch = [dataType = each.dataType](ApiSession& session) { UseFolder(session, dataType); };
    all.push_back(
        Wbxml(std::string("fetch-") + each.name, {GoldenDocument(document + "fetch")}, fetch, RunFetch));
    all.push_back(Xml(Wbxml(std::string("fetch-") + each.name, {}, fetch, RunFetch)));
  }
  all.push_back(Wbxml("sync-two-cycles", {HexAndText(kFirstCycle), HexAndText(kSecondCycle)}, SyncInTwoCycles,
                      RunSync));
  all.push_back(Wbxml("foldersync-late-parents", {HexAndText(kHierarchyChanges)}, Nothing,
                      [](ApiSession& session) { return session.airSync->FolderSync(session.key); }));
}

std::string InLowerCase(const char* name) {
  std::string text = name;
  for (char& c : text) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 'a' - 'A' : c);
  return text;
}

void AddCommands(std::vector<Scenario>& all) {
  for (const ApiCommand& command : ApiCommands()) {
    Scenario scenario = Wbxml(InLowerCase(command.name), {HexAndText(command.answer)}, Nothing, command.run);
    if (*command.request != '\0' && std::string(command.name) != "Sync" &&
        std::string(command.name) != "Fetch") {
      all.push_back(Xml(scenario));
    }
    all.push_back(std::move(scenario));
  }
  all.push_back(Wbxml("notifyenable-off", {HexAndText("03 01 6A 00 00 03 45 50 03 '1' 00 01 01")}, Nothing,
                      RunNotifyOff));
  all.push_back(Wbxml("sendmail-document", {""}, Nothing, RunMailInOnePiece));
  Scenario attachment = Wbxml("getattachment-raw", {"bytes"}, Nothing, RunAttachmentRaw);
  attachment.takesShortBodies = true;
  all.push_back(std::move(attachment));
  Scenario address = Wbxml("setdeviceaddress", {}, Nothing, RunSetDeviceAddress);
  address.expected = AS_RESULT_MALFORMED_DOCUMENT;
  all.push_back(address);
  all.push_back(Xml(std::move(address)));
  Scenario received = Wbxml("notifyrecv", {}, Nothing, RunNotifyRecv);
  received.keepsMemory = true;
  all.push_back(std::move(received));
  all.push_back(Wbxml("connect", {}, Nothing, RunConnect));
}

// The answer to one more command comes first: what that one leaves must not be reached.
SYNC_RESULT RunNotifyEnableAfterGetHierarchy(ApiSession& session) {
  const SYNC_RESULT result = CommandNamed("GetHierarchy").run(session);
  if (result != AS_RESULT_OK) return result;
  AdapterFree(session.hierarchy);
  session.hierarchy = nullptr;
  return CommandNamed("NotifyEnable").run(session);
}

void AddForeignPages(std::vector<Scenario>& all) {
  for (const ForeignPageAnswer& answer : kForeignPageAnswers) {
    all.push_back(Wbxml(std::string("xmlns-") + answer.name, {HexAndText(answer.document)}, Nothing,
                        CommandNamed(answer.command).run));
    all.back().expected = AS_RESULT_MALFORMED_DOCUMENT;
  }
  Scenario after = all.back();
  after.name += "-after-it";
  after.answers.insert(after.answers.begin(), HexAndText("03 01 6A 00 00 03 45 4B 01 01"));
  after.run = RunNotifyEnableAfterGetHierarchy;
  all.push_back(std::move(after));
}

}  // namespace

const std::vector<Scenario>& Scenarios() {
  static const std::vector<Scenario>& scenarios = *[] {
    auto* const all = new std::vector<Scenario>;
    AddSynchronisations(*all);
    AddCommands(*all);
    AddForeignPages(*all);
    return all;
  }();
  return scenarios;
}

}  // namespace torture
