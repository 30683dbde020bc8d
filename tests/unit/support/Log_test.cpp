#include "support/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <vector>

#include "support/FailingMemory.h"
#include "support/LogSpy.h"
#include "support/SlotTable.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::LogSpy;
using testing::ElementsAre;
using testing::IsEmpty;

const char kBanner[] = "------------------------[ end of log ]----------------------------\n";

const AS_LOG_MESSAGE_SOURCE_T kSources[] = {AS_LOG_SOURCE_AIRSYNC,   AS_LOG_SOURCE_COMMUNICATIONS,
                                            AS_LOG_SOURCE_GENERATOR, AS_LOG_SOURCE_PARSER,
                                            AS_LOG_SOURCE_RESERVED,  AS_LOG_SOURCE_ELEMENT};

class LogTest : public testing::Test {
 protected:
  void SetUp() override {
    Log::destroyInstance();
    Log::getInstance();
  }
  void TearDown() override { Log::destroyInstance(); }

  LogSpy spy_;
};

TEST_F(LogTest, NumbersItsSources) {
  EXPECT_EQ(AS_LOG_SOURCE_AIRSYNC, 0);
  EXPECT_EQ(AS_LOG_SOURCE_COMMUNICATIONS, 1);
  EXPECT_EQ(AS_LOG_SOURCE_GENERATOR, 2);
  EXPECT_EQ(AS_LOG_SOURCE_PARSER, 3);
  EXPECT_EQ(AS_LOG_SOURCE_RESERVED, 4);
  EXPECT_EQ(AS_LOG_SOURCE_ELEMENT, 5);
}

TEST_F(LogTest, NumbersItsLevelsAsSignedIntegersHigherIsMoreImportant) {
  EXPECT_EQ(AS_LOG_LEVEL_TRACE, 0);
  EXPECT_EQ(AS_LOG_LEVEL_DETAIL, 1);
  EXPECT_EQ(AS_LOG_LEVEL_INFO, 2);
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<AS_LOG_LEVEL_T>, int>));
}

TEST_F(LogTest, HasOneInstance) {
  EXPECT_NE(Log::getInstance(), nullptr);
  EXPECT_EQ(Log::getInstance(), Log::getInstance());
}

TEST_F(LogTest, DropsEverythingWithoutAnAppender) {
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "nobody listens");
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "nobody listens", 1U);
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &spy_);
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "somebody listens");
  EXPECT_THAT(spy_.Lines(), ElementsAre("somebody listens"));
}

TEST_F(LogTest, WritesLinesAtAndAboveTheThresholdOnly) {
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_DETAIL, &spy_);
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, "trace");
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_DETAIL, "detail");
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "info");
  EXPECT_THAT(spy_.Lines(), ElementsAre("detail", "info"));
}

TEST_F(LogTest, ComparesLevelsAsSignedNumbers) {
  Log::SetLevel(AS_LOG_SOURCE_PARSER, static_cast<AS_LOG_LEVEL_T>(-1), &spy_);
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, "trace");
  EXPECT_THAT(spy_.Lines(), ElementsAre("trace"));
}

TEST_F(LogTest, AppliesTheThresholdToEveryKindOfLine) {
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, &spy_);
  const unsigned char data[] = {1};
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_DETAIL, "text");
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_DETAIL, "label", "value");
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_DETAIL, "label", 1U);
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_DETAIL, "label", true);
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_DETAIL, "label", data, 1U);
  EXPECT_THAT(spy_.Lines(), IsEmpty());
  EXPECT_EQ(spy_.Pending(), "");
}

TEST_F(LogTest, FiltersEverySource) {
  for (const AS_LOG_MESSAGE_SOURCE_T source : kSources) {
    Log::SetLevel(source, AS_LOG_LEVEL_INFO, &spy_);
    Log::write(source, AS_LOG_LEVEL_TRACE, "trace");
    Log::write(source, AS_LOG_LEVEL_DETAIL, "detail");
    Log::write(source, AS_LOG_LEVEL_INFO, "info");
    EXPECT_THAT(spy_.Lines(), ElementsAre("info"));
    spy_.Clear();
  }
}

TEST_F(LogTest, KeepsOneTargetForEachSource) {
  LogSpy other;
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &spy_);
  Log::SetLevel(AS_LOG_SOURCE_ELEMENT, AS_LOG_LEVEL_TRACE, &other);
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, "parser");
  Log::write(AS_LOG_SOURCE_ELEMENT, AS_LOG_LEVEL_TRACE, "element");
  Log::write(AS_LOG_SOURCE_GENERATOR, AS_LOG_LEVEL_INFO, "generator");
  EXPECT_THAT(spy_.Lines(), ElementsAre("parser"));
  EXPECT_THAT(other.Lines(), ElementsAre("element"));
  Log::destroyInstance();
}

TEST_F(LogTest, ANullAppenderSilencesASource) {
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &spy_);
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, nullptr);
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "text");
  EXPECT_THAT(spy_.Lines(), IsEmpty());
}

TEST_F(LogTest, WritesLabelsAndValuesSeparately) {
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &spy_);
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "text");
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "label: ", "value");
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "number: ", 4294967295U);
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "yes: ", true);
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "no: ", false);
  EXPECT_THAT(spy_.Lines(),
              ElementsAre("text", "label: |value", "number: |<4294967295>", "yes: |TRUE", "no: |FALSE"));
}

TEST_F(LogTest, DumpsBytesOneByOne) {
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &spy_);
  const unsigned char data[] = {0x00, 0x7F, 0xFF};
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "dump: ", data, 3U);
  EXPECT_THAT(spy_.Lines(), ElementsAre("dump: |[00]|[7F]|[FF]"));
}

TEST_F(LogTest, ADumpWithoutDataWritesNotEvenItsLabel) {
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &spy_);
  const unsigned char data[] = {1};
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "dump: ", data, 0U);
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "dump: ", static_cast<const unsigned char*>(nullptr),
             5U);
  EXPECT_THAT(spy_.Lines(), IsEmpty());
  EXPECT_EQ(spy_.Pending(), "");
}

std::string DumpOf(std::size_t bytes) {
  std::string text = "dump: ";
  for (std::size_t i = 0; i < bytes; ++i) text += "|[41]";
  return text;
}

TEST_F(LogTest, DumpsUpTo512BytesWhole) {
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &spy_);
  const std::vector<unsigned char> data(512, 'A');
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "dump: ", data.data(), 512U);
  EXPECT_THAT(spy_.Lines(), ElementsAre(DumpOf(512)));
}

TEST_F(LogTest, CutsADumpAfter512BytesAndSaysSo) {
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &spy_);
  const std::vector<unsigned char> data(513, 'A');
  Log::write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "dump: ", data.data(), 513U);
  EXPECT_THAT(spy_.Lines(), ElementsAre(DumpOf(512) + "| <more data>"));
}

TEST_F(LogTest, EndsWithTheBannerOncePerSourceThatHasAnAppender) {
  Log::SetLevel(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_TRACE, &spy_);
  Log::SetLevel(AS_LOG_SOURCE_RESERVED, static_cast<AS_LOG_LEVEL_T>(9), &spy_);
  Log::destroyInstance();
  EXPECT_EQ(spy_.Pending(), std::string(kBanner) + "|" + kBanner);
  EXPECT_THAT(spy_.Lines(), IsEmpty()) << "the banner is no line of its own: the appender ends it";
}

TEST_F(LogTest, ForgetsItsAppendersWithTheInstance) {
  Log::SetLevel(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_TRACE, &spy_);
  Log::destroyInstance();
  spy_.Clear();
  Log::write(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_INFO, "too late");
  Log::getInstance();
  Log::write(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_INFO, "a new instance");
  EXPECT_THAT(spy_.Lines(), IsEmpty());
}

TEST_F(LogTest, DestroyingItTwiceWritesOneBanner) {
  Log::SetLevel(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_TRACE, &spy_);
  Log::destroyInstance();
  Log::destroyInstance();
  EXPECT_EQ(spy_.Pending(), kBanner);
}

TEST_F(LogTest, ANewInstanceStartsFromTheResetTable) {
  Log::destroyInstance();
  Log::SetLevel(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_TRACE, &spy_);
  Log::getInstance();
  Log::write(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_INFO, "text");
  EXPECT_THAT(spy_.Lines(), IsEmpty());
}

// The first two places are those of the destructor.
TEST_F(LogTest, AppendersHaveTheirOperationsInFixedPlaces) {
  typedef airsync_test::SlotTable<6> SixSlots;
  SixSlots slots;
  Appender* volatile foreign = slots.As<Appender>();  // the compiler must not guess whose operations they are
  Appender* const appender = foreign;
  appender->write("text");
  EXPECT_EQ(SixSlots::LastSlot(), 2);
  appender->write(static_cast<unsigned char>(1));
  EXPECT_EQ(SixSlots::LastSlot(), 3);
  appender->write(1U);
  EXPECT_EQ(SixSlots::LastSlot(), 4);
  appender->endEntry();
  EXPECT_EQ(SixSlots::LastSlot(), 5);
}

TEST_F(LogTest, AllocatesNothing) {
  airsync_test::FailingMemory::Reset();
  Log::SetLevel(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_TRACE, &spy_);
  Log::write(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_INFO, "label", "value");
  EXPECT_EQ(airsync_test::FailingMemory::Allocations(), 0U);
}

}  // namespace
