// The log lines of the request builder: source, level, text and order.
#include "GeneratorRig.h"

namespace airsync_test {
namespace {

class GeneratorLog : public GeneratorRig {
 protected:
  typedef std::vector<std::string> Lines;

  // The lines of the next request that are at least so important.
  Lines LinesOf(AS_LOG_LEVEL_T level) {
    LogSpy spy;
    Log::SetLevel(AS_LOG_SOURCE_GENERATOR, level, &spy);
    SE_Destroy(NextRequest());
    Log::SetLevel(AS_LOG_SOURCE_GENERATOR, level, nullptr);
    return spy.Lines();
  }

  void HandOutAdd() { HandOut(AS_CHANGE_ADD, "", 1, &contact); }

  GeneratorLog() { contact.FirstName = name.data(); }

  std::string name = "Ada";
  AS_CONTACT_T contact = {};
};

TEST_F(GeneratorLog, TellsTheStepsOfARequest) {
  HandOutAdd();
  EXPECT_EQ(LinesOf(AS_LOG_LEVEL_TRACE),
            (Lines{"into Generator::SyncCmd", "current SyncKey:|{7}12", "Normal or Full Sync",
                   "current Element Name:|FirstName", "current Element Value:|Ada"}));
}

TEST_F(GeneratorLog, TellsFieldsAsDetails) {
  HandOutAdd();
  EXPECT_EQ(LinesOf(AS_LOG_LEVEL_DETAIL),
            (Lines{"current SyncKey:|{7}12", "Normal or Full Sync", "current Element Name:|FirstName",
                   "current Element Value:|Ada"}));
}

TEST_F(GeneratorLog, TellsTheKeyAsAFact) {
  HandOutAdd();
  EXPECT_EQ(LinesOf(AS_LOG_LEVEL_INFO), (Lines{"current SyncKey:|{7}12", "Normal or Full Sync"}));
}

TEST_F(GeneratorLog, TellsAFirstSync) {
  Fill(folder.syncKey.text, "0");
  EXPECT_EQ(LinesOf(AS_LOG_LEVEL_TRACE),
            (Lines{"into Generator::SyncCmd", "current SyncKey:|0", "Initial Sync"}));
  EXPECT_EQ(LinesOf(AS_LOG_LEVEL_INFO), (Lines{"current SyncKey:|0", "Initial Sync"}));
}

TEST_F(GeneratorLog, TellsOfAContactWithoutARecord) {
  HandOut(AS_CHANGE_ADD, "", 1, nullptr);
  EXPECT_EQ(LinesOf(AS_LOG_LEVEL_INFO),
            (Lines{"current SyncKey:|{7}12", "Normal or Full Sync", "No Contact to add to server\n"}));
}

TEST_F(GeneratorLog, TellsOfAnEventWithoutARecord) {
  folder.dataType = DATATYPE_CALENDAR;
  folder.options.calendar.filterType = 5;
  HandOut(AS_CHANGE_ADD, "", 1, nullptr);
  EXPECT_EQ(LinesOf(AS_LOG_LEVEL_INFO),
            (Lines{"current SyncKey:|{7}12", "Normal or Full Sync", "No Calendar to add to server"}));
}

TEST_F(GeneratorLog, TellsNothingOfAChangeWithoutARecord) {
  HandOut(AS_CHANGE_CHANGE, "2:1", 0, nullptr);
  EXPECT_EQ(LinesOf(AS_LOG_LEVEL_INFO), (Lines{"current SyncKey:|{7}12", "Normal or Full Sync"}));
}

TEST_F(GeneratorLog, WritesUnderItsOwnSourceOnly) {
  LogSpy others;
  for (const AS_LOG_MESSAGE_SOURCE_T source :
       {AS_LOG_SOURCE_AIRSYNC, AS_LOG_SOURCE_COMMUNICATIONS, AS_LOG_SOURCE_PARSER, AS_LOG_SOURCE_RESERVED}) {
    Log::SetLevel(source, AS_LOG_LEVEL_TRACE, &others);
  }
  HandOutAdd();
  SE_Destroy(NextRequest());
  EXPECT_EQ(others.Lines(), Lines());
}

TEST_F(GeneratorLog, NeedsNoLog) {
  LogSpy spy;
  Log::SetLevel(AS_LOG_SOURCE_GENERATOR, AS_LOG_LEVEL_TRACE, &spy);
  Generator silent(&store, ENCODING_WBXML, nullptr);
  HandOutAdd();
  HandOut(AS_CHANGE_ADD, "", 2, nullptr);
  SE_Destroy(silent.Sync(&comms, &folder, notifyKey, status));
  EXPECT_EQ(status, GENERATOR_DONE);
  EXPECT_EQ(spy.Lines(), Lines());
}

}  // namespace
}  // namespace airsync_test
