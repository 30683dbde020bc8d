#include "store/FolderTypes.h"

#include <gtest/gtest.h>

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

TEST(FolderTypes, KnowTheirDataClass) {
  struct Row {
    INT32 number;
    std::optional<DATATYPE> dataType;
  };
  constexpr Row rows[] = {
      {1, DATATYPE_EMAIL},     {2, DATATYPE_EMAIL},     {3, DATATYPE_EMAIL}, {4, DATATYPE_EMAIL},
      {5, DATATYPE_EMAIL},     {6, DATATYPE_EMAIL},     {7, std::nullopt},   {8, DATATYPE_CALENDAR},
      {9, DATATYPE_CONTACTS},  {10, std::nullopt},      {11, std::nullopt},  {12, DATATYPE_EMAIL},
      {13, DATATYPE_CALENDAR}, {14, DATATYPE_CONTACTS}, {15, std::nullopt},  {16, std::nullopt},
      {17, std::nullopt},      {0, std::nullopt},       {18, std::nullopt},  {-1, std::nullopt},
  };
  for (const Row& row : rows) EXPECT_EQ(folderType(row.number).dataType, row.dataType) << row.number;
}

TEST(FolderTypes, GiveUnknownNumbersAName) { EXPECT_STREQ(folderType(99).name, "unknown"); }

}  // namespace
}  // namespace airsync
