#include "document/FieldList.h"

#include <cstring>
#include <gtest/gtest.h>

#include "support/CatchAbort.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::CatchAbort;

TEST(TagPaths, TheFirstTagEndsAtTheSeparatorOrTheEnd) {
  char tag[32];
  GetFirstTag(tag, "Collections/Collection", '/');
  EXPECT_STREQ(tag, "Collections");
  GetFirstTag(tag, "Collection", '/');
  EXPECT_STREQ(tag, "Collection");
  GetFirstTag(tag, "/Collection", '/');
  EXPECT_STREQ(tag, "");
  GetFirstTag(tag, "", '/');
  EXPECT_STREQ(tag, "");
  GetFirstTag(tag, "A:SyncKey", ':');
  EXPECT_STREQ(tag, "A");
}

TEST(TagPaths, TheRestBeginsBehindTheFirstSeparator) {
  const char path[] = "Collections/Collection/Status";
  EXPECT_EQ(RemoveFirstTag(path, '/'), path + 12);
  EXPECT_STREQ(RemoveFirstTag("a/", '/'), "");
  EXPECT_STREQ(RemoveFirstTag("/a", '/'), "a");
}

TEST(TagPaths, TheRestOfTheLastTagIsItsTerminator) {
  const char path[] = "Status";
  EXPECT_EQ(RemoveFirstTag(path, '/'), path + 6);
}

// The string literal's own terminator ends each list.
const char kList[] = "<Name\0first\0second\0><Bare\0><Other\0\0>";

TEST(FieldLists, WalksFieldsAndParameters) {
  const char* field = GetFirstField(kList);
  ASSERT_STREQ(field, "Name");
  const char* parameter = GetFirstParameter(field);
  ASSERT_STREQ(parameter, "first");
  parameter = GetNextParameter(parameter);
  ASSERT_STREQ(parameter, "second");
  EXPECT_EQ(GetNextParameter(parameter), nullptr);

  field = GetNextField(field);
  ASSERT_STREQ(field, "Bare");
  EXPECT_EQ(GetFirstParameter(field), nullptr);

  field = GetNextField(field);
  ASSERT_STREQ(field, "Other");
  parameter = GetFirstParameter(field);
  ASSERT_STREQ(parameter, "") << "an empty parameter is a parameter";
  EXPECT_EQ(GetNextParameter(parameter), nullptr);
  EXPECT_EQ(GetNextField(field), nullptr);
}

TEST(FieldLists, NothingHasNoFirstField) {
  EXPECT_EQ(GetFirstField(nullptr), nullptr);
  EXPECT_EQ(GetFirstField(""), nullptr);
}

TEST(FieldLists, AFieldMustBeginWithItsMark) {
  EXPECT_EQ(CatchAbort([] { GetFirstField("Name\0>"); }), 0x8001000bU);
}

TEST(FieldLists, TheNextFieldMustBeginWithItsMark) {
  EXPECT_EQ(CatchAbort([] { GetNextField(GetFirstField("<Name\0>Other\0>")); }), 0x8001000bU);
}

TEST(FieldLists, AnAngleBracketInsideANameEndsNothing) {
  EXPECT_STREQ(GetNextField(GetFirstField("<Na>me\0a>b\0><Next\0>")), "Next");
}

}  // namespace
