#include "cli/process/FlightRecord.h"

#include <cstring>
#include <gtest/gtest.h>
#include <type_traits>

namespace airsync {
namespace {

static_assert(std::is_trivially_copyable_v<FlightRecord>);

TEST(FlightRecord, TextsAreCutToTheirRoom) {
  SharedText<4> text;
  EXPECT_EQ(text.get(), "");
  text.set("abc");
  EXPECT_EQ(text.get(), "abc");
  text.set("abcd");
  EXPECT_EQ(text.get(), "abc");
  text.set("");
  EXPECT_EQ(text.get(), "");
}

TEST(FlightRecord, TextWithoutAnEndIsReadWithinItsRoom) {
  SharedText<4> text;
  std::memset(static_cast<void*>(&text), 'x', sizeof(text));
  EXPECT_EQ(text.get(), "xxxx");
}

TEST(FlightRecord, CommandIsThatOfTheRequestLine) {
  EXPECT_EQ(commandIn("POST /s?Cmd=FolderSync&User=ann HTTP/1.1\r\nHost: h\r\n"), "FolderSync");
  EXPECT_EQ(commandIn("POST /s?User=ann&Cmd=Sync HTTP/1.1\r\n"), "Sync");
  EXPECT_EQ(commandIn("OPTIONS /s HTTP/1.1\r\nX: ?Cmd=Sync\r\n"), "OPTIONS");
  EXPECT_EQ(commandIn(""), "");
}

}  // namespace
}  // namespace airsync
