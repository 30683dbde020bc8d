// The change walk: which local changes go into a request, in which form, and how many of them.
//
// A command's size is that of a document of its own. An Add with a client id of one digit and a body of n
// bytes measures n + 19: 4 for the head, 1 Add, 5 ClientId, 1 ApplicationData, 2 page, n + 4 Body, 2 ends.
#include <array>

#include "GeneratorRig.h"

namespace airsync_test {
namespace {

const std::size_t kAddOverhead = 19;

class GeneratorCommands : public GeneratorRig {
 protected:
  // Hands out an Add that measures so many bytes.
  void HandOutAdd(UINT32 clientId, std::size_t size) {
    Item& item = items.at(used++);
    item.body.assign(size - kAddOverhead, 'b');
    item.contact.Body = item.body.data();
    HandOut(AS_CHANGE_ADD, "", clientId, &item.contact);
  }

  // The client ids of the Adds of the next request: "1 2".
  std::string NextAdds() {
    sml_element* const request = NextRequest();
    std::string ids;
    if (const sml_element* const commands = SE_GetChild(request, "Collections/Collection/Commands")) {
      for (UINT16 i = 0; i < SE_GetNumberOfChildren(commands); ++i) {
        if (i != 0) ids += " ";
        ids += SE_GetValueOfChild(SE_GetNthChild(commands, i), "ClientId");
      }
    }
    SE_Destroy(request);
    return ids;
  }

  struct Item {
    AS_CONTACT_T contact = {};
    std::string body;
  };
  std::array<Item, 4> items;
  std::size_t used = 0;
};

TEST_F(GeneratorCommands, CarryEachKindOfChangeInTheStoragesOrder) {
  AS_CONTACT_T added = {};
  AS_CONTACT_T changed = {};
  std::string first = "Zo\xC3\xAB";
  std::string last = "Byron";
  added.FirstName = first.data();
  changed.LastName = last.data();
  HandOut(AS_CHANGE_ADD, "", 7, &added);
  HandOut(AS_CHANGE_DELETE, "2:9", 0, nullptr);
  HandOut(AS_CHANGE_CHANGE, "2:5", 0, &changed);
  EXPECT_EQ(InHex(Written(NextRequest())), InHex(GoldenDocument("sync-contacts-all-kinds")));
  EXPECT_EQ(status, GENERATOR_DONE);
  EXPECT_EQ(store.CallsOf("GetNextChange").size(), 4U);
}

TEST_F(GeneratorCommands, TellOfMailsOnlyWhatWasReadAndWhatWasDeleted) {
  AS_EMAIL_T mail = {};
  mail.Read = 1;
  folder.dataType = DATATYPE_EMAIL;
  folder.options.email.filterType = 5;
  HandOut(AS_CHANGE_ADD, "", 7, &mail);
  HandOut(AS_CHANGE_CHANGE, "5:1", 0, &mail);
  HandOut(AS_CHANGE_DELETE, "5:2", 0, nullptr);
  EXPECT_EQ(InHex(Written(NextRequest())), InHex(GoldenDocument("sync-email-read-and-delete")));
  EXPECT_EQ(store.ChangesLeft(), 0U) << "the add is consumed";
}

TEST_F(GeneratorCommands, WriteTheReadFlagOfAMailAsANumber) {
  AS_EMAIL_T unread = {};
  AS_EMAIL_T odd = {};
  odd.Read = 255;
  folder.dataType = DATATYPE_EMAIL;
  HandOut(AS_CHANGE_CHANGE, "5:1", 0, &unread);
  HandOut(AS_CHANGE_CHANGE, "5:2", 0, &odd);
  EXPECT_EQ(NextCommands(),
            "Commands(Change(ServerId=\"5:1\" ApplicationData(Read@2=\"0\")) "
            "Change(ServerId=\"5:2\" ApplicationData(Read@2=\"255\")))");
}

TEST_F(GeneratorCommands, AreLeftOutWhereAMailFolderHasOnlyAdds) {
  AS_EMAIL_T mail = {};
  folder.dataType = DATATYPE_EMAIL;
  HandOut(AS_CHANGE_ADD, "", 7, &mail);
  HandOut(AS_CHANGE_ADD, "", 8, nullptr);
  EXPECT_EQ(NextCommands(), "");
  EXPECT_EQ(status, GENERATOR_DONE);
  EXPECT_EQ(store.ChangesLeft(), 0U);
}

TEST_F(GeneratorCommands, DeleteInACalendarToo) {
  folder.dataType = DATATYPE_CALENDAR;
  HandOut(AS_CHANGE_DELETE, "3:4", 0, nullptr);
  EXPECT_EQ(NextCommands(), "Commands(Delete(ServerId=\"3:4\"))");
}

TEST_F(GeneratorCommands, PassOverKindsThatAreNone) {
  AS_CONTACT_T contact = {};
  for (const int kind : {3, -1, INT32_MIN}) {
    HandOut(static_cast<AS_CHANGE_KIND_T>(kind), "2:1", 1, &contact);
  }
  HandOut(AS_CHANGE_DELETE, "2:9", 0, nullptr);
  EXPECT_EQ(NextCommands(), "Commands(Delete(ServerId=\"2:9\"))");
}

TEST_F(GeneratorCommands, PassOverChangesWithoutARecord) {
  HandOut(AS_CHANGE_ADD, "", 1, nullptr);
  HandOut(AS_CHANGE_CHANGE, "2:1", 0, nullptr);
  EXPECT_EQ(NextCommands(), "");
  EXPECT_EQ(status, GENERATOR_DONE);
}

// A storage that touches the record's place only where it has a record.
class SparingStore : public RecordingStore {
 public:
  int GetNextChange(INT32 handle, void** record, SERVER_ID* id, UINT32* clientId, int* kind) override {
    void* handedOut = nullptr;
    const int result = RecordingStore::GetNextChange(handle, &handedOut, id, clientId, kind);
    if (handedOut != nullptr) *record = handedOut;
    return result;
  }
};

TEST_F(GeneratorCommands, DoNotTakeAnEarlierRecordForAMissingOne) {
  SparingStore sparing;
  Generator other(&sparing, ENCODING_WBXML, nullptr);
  AS_CONTACT_T contact = {};
  LocalChange change;
  change.clientId = 1;
  change.record = &contact;
  sparing.HandOut(change);
  change.record = nullptr;
  sparing.HandOut(change);
  sml_element* const request = other.Sync(&comms, &folder, notifyKey, status);
  EXPECT_EQ(Outline(SE_GetChild(request, "Collections/Collection/Commands")),
            "Commands(Add(ClientId=\"1\" ApplicationData))");
  SE_Destroy(request);
}

TEST_F(GeneratorCommands, WriteAContactWithoutFieldsAsEmptyData) {
  AS_CONTACT_T contact = {};
  HandOut(AS_CHANGE_ADD, "", 1, &contact);
  EXPECT_EQ(NextCommands(), "Commands(Add(ClientId=\"1\" ApplicationData))");
}

TEST_F(GeneratorCommands, WriteClientIdsAsSignedNumbers) {
  AS_CONTACT_T contact = {};
  HandOut(AS_CHANGE_ADD, "", 0x7FFFFFFF, &contact);
  HandOut(AS_CHANGE_ADD, "", 0xFFFFFFFF, &contact);
  EXPECT_EQ(NextAdds(), "2147483647 -1");
}

TEST_F(GeneratorCommands, CutServerIdsAt48CharactersAndWriteAnEmptyOneAsZero) {
  HandOut(AS_CHANGE_DELETE, std::string(51, 'x'), 0, nullptr);
  HandOut(AS_CHANGE_DELETE, "", 0, nullptr);
  EXPECT_EQ(NextCommands(),
            "Commands(Delete(ServerId=\"" + std::string(48, 'x') + "\") Delete(ServerId=\"0\"))");
}

TEST_F(GeneratorCommands, FillTheBudgetOf9488BytesExactly) {
  HandOutAdd(1, 9488);
  EXPECT_EQ(NextAdds(), "1");
  EXPECT_EQ(status, GENERATOR_DONE);

  HandOutAdd(2, 4744);
  HandOutAdd(3, 4744);
  EXPECT_EQ(NextAdds(), "2 3");
  EXPECT_EQ(status, GENERATOR_DONE);
}

TEST_F(GeneratorCommands, KeepWhatIsOneByteTooLongForTheNextRequest) {
  HandOutAdd(1, 4744);
  HandOutAdd(2, 4745);
  HandOutAdd(3, 4743);
  EXPECT_EQ(NextAdds(), "1");
  EXPECT_EQ(status, GENERATOR_MORE);
  EXPECT_EQ(store.CallsOf("GetNextChange").size(), 2U) << "the walk ends with the change that does not fit";

  EXPECT_EQ(NextAdds(), "2 3") << "4745 and 4743 fit exactly";
  EXPECT_EQ(status, GENERATOR_DONE);
  EXPECT_EQ(store.CallsOf("GetNextChange").size(), 4U) << "it is not asked for again";
  EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore);
}

TEST_F(GeneratorCommands, CountThePendingOneAgainstTheBudget) {
  HandOutAdd(1, 5000);
  HandOutAdd(2, 5000);
  HandOutAdd(3, 4489);
  EXPECT_EQ(NextAdds(), "1");
  EXPECT_EQ(status, GENERATOR_MORE);
  EXPECT_EQ(NextAdds(), "2") << "4489 more would be 9489";
  EXPECT_EQ(status, GENERATOR_MORE);
  EXPECT_EQ(NextAdds(), "3");
  EXPECT_EQ(status, GENERATOR_DONE);
}

TEST_F(GeneratorCommands, SendAPendingOneOf9999BytesAlone) {
  HandOutAdd(1, 100);
  HandOutAdd(2, 9999);
  HandOutAdd(3, 20);
  EXPECT_EQ(NextAdds(), "1");
  EXPECT_EQ(status, GENERATOR_MORE);
  EXPECT_EQ(NextAdds(), "2");
  EXPECT_EQ(status, GENERATOR_MORE);
  EXPECT_EQ(NextAdds(), "3");
  EXPECT_EQ(status, GENERATOR_DONE);
}

TEST_F(GeneratorCommands, ReportAPendingOneOf10000BytesThatGoesOutAllTheSame) {
  HandOutAdd(1, 100);
  HandOutAdd(2, 10000);
  HandOutAdd(3, 20);
  EXPECT_EQ(NextAdds(), "1");
  EXPECT_EQ(status, GENERATOR_MORE);
  EXPECT_EQ(NextAdds(), "2");
  EXPECT_EQ(status, GENERATOR_ERROR);
  EXPECT_EQ(store.CallsOf("GetNextChange").size(), 2U) << "nothing more is asked for";
}

// The tree that carried it is gone by then: under AddressSanitizer a second use would stop this test.
TEST_F(GeneratorCommands, UseACommandThatIsAttachedAndPendingNoSecondTime) {
  HandOutAdd(1, 100);
  HandOutAdd(2, 10000);
  HandOutAdd(3, 20);
  EXPECT_EQ(NextAdds(), "1");
  EXPECT_EQ(NextAdds(), "2");
  EXPECT_EQ(status, GENERATOR_ERROR);
  EXPECT_EQ(NextAdds(), "3");
  EXPECT_EQ(status, GENERATOR_DONE);
  EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore);
}

TEST_F(GeneratorCommands, KeepALaterPendingOneAfterOneThatWasTooLarge) {
  HandOutAdd(1, 100);
  HandOutAdd(2, 10000);
  HandOutAdd(3, 5000);
  HandOutAdd(4, 5000);
  EXPECT_EQ(NextAdds(), "1");
  EXPECT_EQ(NextAdds(), "2");
  EXPECT_EQ(status, GENERATOR_ERROR);
  EXPECT_EQ(NextAdds(), "3");
  EXPECT_EQ(status, GENERATOR_MORE);
  EXPECT_EQ(NextAdds(), "4");
  EXPECT_EQ(status, GENERATOR_DONE);
  EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore);
}

TEST_F(GeneratorCommands, AreLeftOutWhereTheFirstChangeAloneIsTooLong) {
  HandOutAdd(1, 9489);
  EXPECT_EQ(NextCommands(), "");
  EXPECT_EQ(status, GENERATOR_ERROR);

  EXPECT_EQ(NextAdds(), "1") << "pending, it is measured against the higher limit";
  EXPECT_EQ(status, GENERATOR_DONE);
}

TEST_F(GeneratorCommands, ReportAFirstChangeOf10000BytesTwice) {
  HandOutAdd(1, 10000);
  EXPECT_EQ(NextCommands(), "");
  EXPECT_EQ(status, GENERATOR_ERROR);
  EXPECT_EQ(NextAdds(), "1");
  EXPECT_EQ(status, GENERATOR_ERROR);
  EXPECT_EQ(NextAdds(), "");
  EXPECT_EQ(status, GENERATOR_DONE);
}

// Lengths of measured documents have 16 bits.
TEST_F(GeneratorCommands, MeasureModulo65536) {
  HandOutAdd(1, 65536 + 9488);
  EXPECT_EQ(NextAdds(), "1");
  EXPECT_EQ(status, GENERATOR_DONE);
  HandOutAdd(2, 65536 + 9489);
  EXPECT_EQ(NextAdds(), "");
  EXPECT_EQ(status, GENERATOR_ERROR);
}

TEST_F(GeneratorCommands, AreMeasuredInTheEncodingThatIsSent) {
  Generator xml(&store, ENCODING_XML, nullptr);
  HandOutAdd(1, 9488);
  SE_Destroy(xml.Sync(&comms, &folder, notifyKey, status));
  EXPECT_EQ(status, GENERATOR_ERROR) << "XML writes the same command with more bytes";
  xml.ForgetTrackedMemory();
}

TEST_F(GeneratorCommands, KeepThePendingOneThroughRequestsWithoutCommands) {
  HandOutAdd(1, 5000);
  HandOutAdd(2, 5000);
  EXPECT_EQ(NextAdds(), "1");
  folder.syncMode = 2;
  EXPECT_EQ(NextAdds(), "");
  EXPECT_EQ(status, GENERATOR_DONE);
  folder.syncMode = 0;
  EXPECT_EQ(NextAdds(), "2");
}

// Whatever fails in a request that a pending command leads: the next one starts clean, and the storage hands
// its changes out anew.
TEST_F(GeneratorCommands, StartCleanAfterAnAbortAtAnyAllocation) {
  std::size_t failed = 0;
  for (std::size_t k = 1;; ++k) {
    used = 0;
    HandOutAdd(1, 5000);
    HandOutAdd(2, 5000);
    ASSERT_EQ(NextAdds(), "1");
    ASSERT_EQ(status, GENERATOR_MORE);

    FailingMemory::FailAt(k);
    sml_element* request = nullptr;
    const SYNC_RESULT result = CatchAbort([&]() { request = NextRequest(); });
    FailingMemory::FailAt(0);
    if (result == 0) {
      SE_Destroy(request);
      break;
    }
    ASSERT_EQ(result, 0x8001000dU) << k;
    ++failed;
    generator.ForgetTrackedMemory();
    ASSERT_EQ(FailingMemory::LiveBlocks(), blocksBefore) << k;
    ASSERT_EQ(NextAdds(), "");
    ASSERT_EQ(status, GENERATOR_DONE);
  }
  // Each block takes two allocations. Sync, Collections, Collection, DeletesAsMoves, GetChanges, Options and
  // Commands are two blocks: 28. Class, SyncKey, CollectionId, WindowSize, Conflict and Truncation are three:
  // 36. The first child of an element brings a new array (Sync, Collections, Collection, Options, Commands):
  // 10. Each of the others grows one: 8.
  EXPECT_EQ(failed, 82U);
}

}  // namespace
}  // namespace airsync_test
