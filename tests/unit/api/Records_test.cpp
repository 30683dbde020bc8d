#include "api/Records.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <type_traits>

namespace {

using namespace AIRSYNC_STACK;

TEST(Records, OfIdentifiersAreTheirTextAndNothingElse) {
  EXPECT_EQ(sizeof(_SYNC_KEY), 68U);
  EXPECT_EQ(sizeof(SERVER_ID), 52U);
  EXPECT_EQ(sizeof(FOLDER_ID), 68U);
  // An array steps by one whole record.
  EXPECT_EQ(sizeof(FOLDER_ID[3]), 3 * 68U);
}

TEST(Records, MayBeCopiedByteForByte) {
  EXPECT_TRUE(std::is_trivially_copyable_v<_SYNC_KEY>);
  EXPECT_TRUE(std::is_trivially_copyable_v<SERVER_ID>);
  EXPECT_TRUE(std::is_trivially_copyable_v<FOLDER_ID>);
  EXPECT_TRUE(std::is_trivially_copyable_v<SERVER_INFO>);
  EXPECT_TRUE(std::is_trivially_copyable_v<BASE_FOLDER>);
  EXPECT_TRUE(std::is_trivially_copyable_v<FOLDER_INFO>);
}

TEST(Records, OfTheAccountHaveTheirFieldsInOrder) {
  EXPECT_EQ(offsetof(SERVER_INFO, host), 0U);
  EXPECT_EQ(offsetof(SERVER_INFO, user), 256U);
  EXPECT_EQ(offsetof(SERVER_INFO, password), 512U);
  EXPECT_EQ(offsetof(SERVER_INFO, deviceType), 768U);
  EXPECT_EQ(offsetof(SERVER_INFO, deviceId), 801U);
  EXPECT_EQ(offsetof(SERVER_INFO, domain), 866U);
  EXPECT_EQ(offsetof(SERVER_INFO, path), 1122U);
  EXPECT_EQ(offsetof(SERVER_INFO, userAgent), 1378U);
  EXPECT_EQ(sizeof(SERVER_INFO), 1448U);
}

TEST(Records, OfTheHierarchyHaveTheirFieldsInOrder) {
  EXPECT_EQ(offsetof(BASE_FOLDER, displayName), 0U);
  EXPECT_EQ(offsetof(BASE_FOLDER, type), 64U);
  EXPECT_EQ(offsetof(BASE_FOLDER, serverId), 68U);
  EXPECT_EQ(offsetof(BASE_FOLDER, parentId), 136U);
  EXPECT_EQ(sizeof(BASE_FOLDER), 204U);
}

TEST(Records, OfAFolderBeginWithTheHierarchysAndKeepTheirOrder) {
  EXPECT_EQ(offsetof(FOLDER_INFO, folder), 0U);
  EXPECT_EQ(offsetof(FOLDER_INFO, dataType), 204U);
  EXPECT_EQ(offsetof(FOLDER_INFO, handle), 208U);
  EXPECT_EQ(offsetof(FOLDER_INFO, syncMode), 212U);
  EXPECT_EQ(offsetof(FOLDER_INFO, syncKey), 216U);
  EXPECT_EQ(offsetof(FOLDER_INFO, truncation), 284U);
  EXPECT_EQ(offsetof(FOLDER_INFO, conflict), 288U);
  EXPECT_EQ(offsetof(FOLDER_INFO, notifyEnabled), 292U);
  EXPECT_EQ(offsetof(FOLDER_INFO, notifyGuid), 293U);
  EXPECT_EQ(offsetof(FOLDER_INFO, selected), 294U);
  EXPECT_EQ(offsetof(FOLDER_INFO, options), 296U);
}

TEST(Records, OfAFolderShareTheStorageOfTheirOptions) {
  FOLDER_INFO folder = {};
  const auto offset = [&folder](const void* field) {
    return static_cast<const char*>(field) - reinterpret_cast<const char*>(&folder.options);
  };
  EXPECT_EQ(offset(&folder.options.contacts.supported), 0);
  EXPECT_EQ(offset(&folder.options.calendar.filterType), 0);
  EXPECT_EQ(offset(&folder.options.email.filterType), 0);
  EXPECT_EQ(offset(&folder.options.contacts.supportedCount), offset(&folder.options.calendar.supported));
  EXPECT_EQ(sizeof(*folder.options.contacts.supported), 64U);
  EXPECT_EQ(sizeof(folder.options.contacts.supportedCount), 1U);
  EXPECT_EQ(sizeof(folder.options.calendar.supportedCount), 1U);
}

TEST(Records, NumberTheClassesOfDataAndTheEncodings) {
  EXPECT_EQ(sizeof(DATATYPE), 4U);
  EXPECT_EQ(DATATYPE_CONTACTS, 0);
  EXPECT_EQ(DATATYPE_CALENDAR, 1);
  EXPECT_EQ(DATATYPE_EMAIL, 2);
  EXPECT_EQ(ENCODING_XML, 0);
  EXPECT_EQ(ENCODING_WBXML, 1);
  EXPECT_EQ(ENCODING_RAW_MESSAGE, 2);
  EXPECT_EQ(ENCODING_NO_BODY, 3);
}

}  // namespace
