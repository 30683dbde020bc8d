#include "document/Vocabulary.h"

#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "document/wbxml.h"

namespace {

using namespace AIRSYNC_STACK;

struct ExpectedPage {
  const char* nameSpace;
  const char* entries;  // in the order of the page: tag, blank, token in hexadecimal
};

// clang-format off
const ExpectedPage kExpected[] = {
    {"Sync:",
     "Sync 05, Responses 06, Add 07, Change 08, Delete 09, Fetch 0A, SyncKey 0B, ClientId 0C, "
     "ServerId 0D, Status 0E, Collection 0F, Class 10, Version 11, CollectionId 12, GetChanges "
     "13, MoreAvailable 14, WindowSize 15, Commands 16, Options 17, FilterType 18, Truncation "
     "19, RTFTruncation 1A, Conflict 1B, Collections 1C, ApplicationData 1D, DeletesAsMoves "
     "1E, NotifyGUID 1F, Supported 20, A:SyncKey 0B, A:FilterType 18"},
    {"POOMCONTACTS:",
     "Anniversary 05, AssistantName 06, AssistnamePhoneNumber 07, Birthday 08, Body 09, "
     "BodySize 0A, BodyTruncated 0B, Business2PhoneNumber 0C, BusinessCity 0D, BusinessCountry "
     "0E, BusinessPostalCode 0F, BusinessState 10, BusinessStreet 11, BusinessFaxNumber 12, "
     "BusinessPhoneNumber 13, CarPhoneNumber 14, Categories 15, Category 16, Children 17, "
     "Child 18, CompanyName 19, Department 1A, Email1Address 1B, Email2Address 1C, "
     "Email3Address 1D, FileAs 1E, FirstName 1F, Home2PhoneNumber 20, HomeCity 21, HomeCountry "
     "22, HomePostalCode 23, HomeState 24, HomeStreet 25, HomeFaxNumber 26, HomePhoneNumber "
     "27, JobTitle 28, LastName 29, MiddleName 2A, MobilePhoneNumber 2B, OfficeLocation 2C, "
     "OtherCity 2D, OtherCountry 2E, OtherPostalCode 2F, OtherState 30, OtherStreet 31, "
     "PagerNumber 32, RadioPhoneNumber 33, Spouse 34, Suffix 35, Title 36, WebPage 37, "
     "YOMICompanyName 38, YOMIFirstName 39, YOMILastName 3A, CompressedRTF 3B"},
    {"POOMMAIL:",
     "Attachment 05, Attachments 06, AttName 07, AttSize 08, AttOID 09, AttMethod 0A, "
     "AttRemoved 0B, Body 0C, BodySize 0D, BodyTruncated 0E, DateReceived 0F, DisplayName 10, "
     "DisplayTo 11, Importance 12, MessageClass 13, Subject 14, Read 15, To 16, Cc 17, From "
     "18, Replyto 19, AllDayEvent 1A, Categories 1B, Category 1C, DtStamp 1D, EndTime 1E, "
     "InstanceType 1F, IntdBusyStatus 20, Location 21, MeetingRequest 22, Organizer 23, "
     "RecurrenceID 24, Reminder 25, ResponseRequested 26, Recurrences 27, Recurrence 28, "
     "RecurrenceType 29, RecurrenceUntil 2A, RecurrenceOccurrences 2B, RecurrenceInterval 2C, "
     "DayOfWeek 2D, DayOfMonth 2E, WeekOfMonth 2F, MonthOfYear 30, StartTime 31, Sensitivity "
     "32, Timezone 33, GlobalObjID 34, ThreadTopic 35"},
    {"AirNotify:",
     "AirNotify 05, Notify 06, Version 07, Lifetime 08, DeviceInfo 09, Enable 0A, Folder 0B, "
     "ServerId 0C, DeviceAddress 0D, ValidCarrierProfiles 0E, CarrierProfile 0F, Status 10, "
     "Responses 11, Devices 12, Device 13, ID 14, Expiry 15, NotifyGUID 16, FriendlyName 17"},
    {"POOMCAL:",
     "Timezone 05, Alldayevent 06, Attendees 07, Attendee 08, AttendeeEmail 09, AttendeeName "
     "0A, Body 0B, BodyTruncated 0C, Busystatus 0D, Categories 0E, Category 0F, CompressedRtf "
     "10, Dtstamp 11, Endtime 12, Exception 13, Exceptions 14, ExceptionIsdeleted 15, "
     "ExceptionStarttime 16, Location 17, Meetingstatus 18, OrganizerEmail 19, OrganizerName "
     "1A, Recurrence 1B, RecurrenceType 1C, RecurrenceUntil 1D, RecurrenceOccurrences 1E, "
     "RecurrenceInterval 1F, RecurrenceDayofweek 20, RecurrenceDayofmonth 21, "
     "RecurrenceWeekofmonth 22, RecurrenceMonthofyear 23, ReminderMinsbefore 24, Sensitivity "
     "25, Subject 26, Starttime 27, Uid 28"},
    {"Move:",
     "Moves 05, Move 06, SrcMsgId 07, SrcFldId 08, DstFldId 09, Response 0A, Status 0B, "
     "DstMsgId 0C"},
    {"GetItemEstimate:",
     "GetItemEstimate 05, Version 06, Collections 07, Collection 08, Class 09, CollectionId "
     "0A, A:SyncKey 0B, Estimate 0C, Response 0D, Status 0E, A:SyncKey 0B, A:FilterType 18"},
    {"FolderHierarchy:",
     "Folders 05, Folder 06, DisplayName 07, ServerId 08, ParentId 09, Type 0A, Response 0B, "
     "Status 0C, ContenteClass 0D, Changes 0E, Add 0F, Delete 10, Update 11, SyncKey 12, "
     "CreateCmd 13, DeleteCmd 14, UpdateCmd 15, FolderSync 16, Count 17, Version 18"},
    {"MeetingResponse:",
     "CalId 05, CollectionId 06, MeetingResponse 07, ReqId 08, Request 09, Result 0A, Status "
     "0B, UserResponse 0C, Version 0D"},
};
// clang-format on

struct Entry {
  std::string tag;
  UINT8 token;
};

std::vector<Entry> Entries(const ExpectedPage& page) {
  std::vector<Entry> entries;
  std::istringstream list(page.entries);
  for (std::string tag, token; list >> tag >> token;) {
    entries.push_back({tag, static_cast<UINT8>(std::stoi(token, nullptr, 16))});
  }
  return entries;
}

TEST(Vocabulary, HasNinePages) {
  EXPECT_EQ(kCodePages, 9);
  EXPECT_EQ(std::size(kExpected), 9U);
}

TEST(Vocabulary, HasTheNumberOfEntriesThatEachPageHas) {
  const std::size_t counts[] = {30, 55, 49, 19, 36, 8, 12, 20, 9};
  for (UINT8 page = 0; page < 9; ++page) {
    EXPECT_EQ(TagsOfPage(page).count, counts[page]) << "page " << int{page};
    EXPECT_EQ(Entries(kExpected[page]).size(), counts[page]) << "page " << int{page};
  }
}

TEST(Vocabulary, HoldsEveryEntryInItsPlace) {
  for (UINT8 page = 0; page < 9; ++page) {
    EXPECT_STREQ(NamespaceOfPage(page), kExpected[page].nameSpace);
    const std::vector<Entry> expected = Entries(kExpected[page]);
    const TagList tags = TagsOfPage(page);
    ASSERT_EQ(tags.count, expected.size());
    for (unsigned i = 0; i < tags.count; ++i) {
      EXPECT_EQ(tags.entries[i].tag, expected[i].tag) << "page " << int{page} << " entry " << i;
      EXPECT_EQ(tags.entries[i].token, expected[i].token) << "page " << int{page} << " " << expected[i].tag;
    }
  }
}

TEST(Vocabulary, FindsTheTokenOfEachTag) {
  for (UINT8 page = 0; page < 9; ++page) {
    for (const Entry& entry : Entries(kExpected[page])) {
      EXPECT_EQ(TokenOfTag(page, entry.tag.c_str()), entry.token) << "page " << int{page} << " " << entry.tag;
    }
  }
}

TEST(Vocabulary, FindsTheFirstTagOfEachToken) {
  for (UINT8 page = 0; page < 9; ++page) {
    std::set<UINT8> seen;
    for (const Entry& entry : Entries(kExpected[page])) {
      if (!seen.insert(entry.token).second) continue;
      EXPECT_EQ(TagOfToken(page, entry.token), entry.tag) << "page " << int{page};
    }
  }
}

TEST(Vocabulary, KnowsNoOtherToken) {
  for (UINT8 page = 0; page < 9; ++page) {
    std::set<UINT8> known;
    for (const Entry& entry : Entries(kExpected[page])) known.insert(entry.token);
    for (unsigned token = 0; token < 256; ++token) {
      const bool expected = known.count(static_cast<UINT8>(token)) != 0;
      EXPECT_EQ(TagOfToken(page, static_cast<UINT8>(token)) != nullptr, expected)
          << "page " << int{page} << " token " << token;
    }
  }
}

TEST(Vocabulary, FindsEachTagInItsOwnPagesOnly) {
  std::set<std::string> all;
  for (const ExpectedPage& page : kExpected) {
    for (const Entry& entry : Entries(page)) all.insert(entry.tag);
  }
  for (UINT8 page = 0; page < 9; ++page) {
    std::set<std::string> known;
    for (const Entry& entry : Entries(kExpected[page])) known.insert(entry.tag);
    for (const std::string& tag : all) {
      EXPECT_EQ(TokenOfTag(page, tag.c_str()) != 0, known.count(tag) != 0)
          << "page " << int{page} << " " << tag;
    }
  }
}

TEST(Vocabulary, ComparesTagsExactly) {
  EXPECT_EQ(TokenOfTag(0, "sync"), 0);
  EXPECT_EQ(TokenOfTag(0, "Syn"), 0);
  EXPECT_EQ(TokenOfTag(0, "Sync "), 0);
  EXPECT_EQ(TokenOfTag(0, ""), 0);
  EXPECT_EQ(TokenOfTag(0, "DeleteAsMoves"), 0) << "validation spells it so, the vocabulary does not";
  EXPECT_EQ(TokenOfTag(1, "A:SyncKey"), 0);
}

TEST(Vocabulary, HasNoTenthPage) {
  EXPECT_EQ(TokenOfTag(9, "Sync"), 0);
  EXPECT_EQ(TokenOfTag(255, "Sync"), 0);
  EXPECT_EQ(TagOfToken(9, 0x05), nullptr);
  EXPECT_EQ(TagOfToken(255, 0x05), nullptr);
}

TEST(Vocabulary, AliasesShareTheTokensOfTheirFirstNames) {
  EXPECT_EQ(TokenOfTag(0, "A:SyncKey"), 0x0B);
  EXPECT_EQ(TokenOfTag(0, "A:FilterType"), 0x18);
  EXPECT_STREQ(TagOfToken(0, 0x0B), "SyncKey");
  EXPECT_STREQ(TagOfToken(0, 0x18), "FilterType");
  EXPECT_STREQ(TagOfToken(6, 0x0B), "A:SyncKey");
  EXPECT_STREQ(TagOfToken(6, 0x18), "A:FilterType");
}

TEST(Vocabulary, FindsAPageByItsNamespace) {
  for (UINT8 page = 0; page < 9; ++page) EXPECT_EQ(LookupCodePage(kExpected[page].nameSpace), page);
}

TEST(Vocabulary, TakesAnUnknownNamespaceForPageZero) {
  for (const char* const text :
       {"AirSync:", "POOMCONTACTS", "poomcontacts:", "POOMCONTACTS::", "", "Unknown:"}) {
    EXPECT_EQ(LookupCodePage(text), 0) << text;
  }
  EXPECT_EQ(LookupCodePage(nullptr), 0);
}

}  // namespace
