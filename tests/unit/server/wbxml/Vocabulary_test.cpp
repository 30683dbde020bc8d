#include "wbxml/Vocabulary.h"

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>

namespace demoserver {
namespace {

// Every page as it is published: a name, its token in hexadecimal, and so on.
constexpr std::array<const char*, kPageCount> kPublished = {
    "Sync 05, Responses 06, Add 07, Change 08, Delete 09, Fetch 0A, SyncKey 0B, ClientId 0C, ServerId 0D, "
    "Status 0E, Collection 0F, Class 10, Version 11, CollectionId 12, GetChanges 13, MoreAvailable 14, "
    "WindowSize 15, Commands 16, Options 17, FilterType 18, Truncation 19, RTFTruncation 1A, Conflict 1B, "
    "Collections 1C, ApplicationData 1D, DeletesAsMoves 1E, NotifyGUID 1F, Supported 20, A:SyncKey 0B, "
    "A:FilterType 18",
    "Anniversary 05, AssistantName 06, AssistnamePhoneNumber 07, Birthday 08, Body 09, BodySize 0A, "
    "BodyTruncated 0B, Business2PhoneNumber 0C, BusinessCity 0D, BusinessCountry 0E, BusinessPostalCode 0F, "
    "BusinessState 10, BusinessStreet 11, BusinessFaxNumber 12, BusinessPhoneNumber 13, CarPhoneNumber 14, "
    "Categories 15, Category 16, Children 17, Child 18, CompanyName 19, Department 1A, Email1Address 1B, "
    "Email2Address 1C, Email3Address 1D, FileAs 1E, FirstName 1F, Home2PhoneNumber 20, HomeCity 21, "
    "HomeCountry 22, HomePostalCode 23, HomeState 24, HomeStreet 25, HomeFaxNumber 26, HomePhoneNumber 27, "
    "JobTitle 28, LastName 29, MiddleName 2A, MobilePhoneNumber 2B, OfficeLocation 2C, OtherCity 2D, "
    "OtherCountry 2E, OtherPostalCode 2F, OtherState 30, OtherStreet 31, PagerNumber 32, "
    "RadioPhoneNumber 33, Spouse 34, Suffix 35, Title 36, WebPage 37, YOMICompanyName 38, YOMIFirstName 39, "
    "YOMILastName 3A, CompressedRTF 3B",
    "Attachment 05, Attachments 06, AttName 07, AttSize 08, AttOID 09, AttMethod 0A, AttRemoved 0B, Body 0C, "
    "BodySize 0D, BodyTruncated 0E, DateReceived 0F, DisplayName 10, DisplayTo 11, Importance 12, "
    "MessageClass 13, Subject 14, Read 15, To 16, Cc 17, From 18, Replyto 19, AllDayEvent 1A, Categories 1B, "
    "Category 1C, DtStamp 1D, EndTime 1E, InstanceType 1F, IntdBusyStatus 20, Location 21, "
    "MeetingRequest 22, Organizer 23, RecurrenceID 24, Reminder 25, ResponseRequested 26, Recurrences 27, "
    "Recurrence 28, RecurrenceType 29, RecurrenceUntil 2A, RecurrenceOccurrences 2B, RecurrenceInterval 2C, "
    "DayOfWeek 2D, DayOfMonth 2E, WeekOfMonth 2F, MonthOfYear 30, StartTime 31, Sensitivity 32, Timezone 33, "
    "GlobalObjID 34, ThreadTopic 35",
    "AirNotify 05, Notify 06, Version 07, Lifetime 08, DeviceInfo 09, Enable 0A, Folder 0B, ServerId 0C, "
    "DeviceAddress 0D, ValidCarrierProfiles 0E, CarrierProfile 0F, Status 10, Responses 11, Devices 12, "
    "Device 13, ID 14, Expiry 15, NotifyGUID 16, FriendlyName 17",
    "Timezone 05, Alldayevent 06, Attendees 07, Attendee 08, AttendeeEmail 09, AttendeeName 0A, Body 0B, "
    "BodyTruncated 0C, Busystatus 0D, Categories 0E, Category 0F, CompressedRtf 10, Dtstamp 11, Endtime 12, "
    "Exception 13, Exceptions 14, ExceptionIsdeleted 15, ExceptionStarttime 16, Location 17, "
    "Meetingstatus 18, OrganizerEmail 19, OrganizerName 1A, Recurrence 1B, RecurrenceType 1C, "
    "RecurrenceUntil 1D, RecurrenceOccurrences 1E, RecurrenceInterval 1F, RecurrenceDayofweek 20, "
    "RecurrenceDayofmonth 21, RecurrenceWeekofmonth 22, RecurrenceMonthofyear 23, ReminderMinsbefore 24, "
    "Sensitivity 25, Subject 26, Starttime 27, Uid 28",
    "Moves 05, Move 06, SrcMsgId 07, SrcFldId 08, DstFldId 09, Response 0A, Status 0B, DstMsgId 0C",
    "GetItemEstimate 05, Version 06, Collections 07, Collection 08, Class 09, CollectionId 0A, "
    "A:SyncKey 0B, Estimate 0C, Response 0D, Status 0E, A:SyncKey 0B, A:FilterType 18",
    "Folders 05, Folder 06, DisplayName 07, ServerId 08, ParentId 09, Type 0A, Response 0B, Status 0C, "
    "ContenteClass 0D, Changes 0E, Add 0F, Delete 10, Update 11, SyncKey 12, CreateCmd 13, DeleteCmd 14, "
    "UpdateCmd 15, FolderSync 16, Count 17, Version 18",
    "CalId 05, CollectionId 06, MeetingResponse 07, ReqId 08, Request 09, Result 0A, Status 0B, "
    "UserResponse 0C, Version 0D"};

TEST(DemoVocabulary, HoldsEveryPublishedTagUnderItsToken) {
  for (std::size_t page = 0; page < kPageCount; ++page) {
    std::istringstream entries(kPublished[page]);
    std::string name, token;
    std::map<int, std::string> names;
    while (entries >> name >> token) {
      const int number = static_cast<int>(std::strtol(token.c_str(), nullptr, 16));
      EXPECT_EQ(tokenOf(static_cast<Page>(page), name), number) << "page " << page << ' ' << name;
      // Of several names of a token the first one is read.
      names.emplace(number, name);
    }
    for (int number = 0; number < 0x40; ++number)
      EXPECT_EQ(nameOf(static_cast<Page>(page), static_cast<std::uint8_t>(number)), names[number])
          << "page " << page << " token " << number;
  }
}

TEST(DemoVocabulary, KnowsNoTagOfAnotherPage) {
  EXPECT_EQ(tokenOf(Page::Sync, "FirstName"), 0);
  EXPECT_EQ(tokenOf(Page::Contacts, "Sync"), 0);
  EXPECT_EQ(tokenOf(Page::Contacts, "AssistantPhoneNumber"), 0);
}

}  // namespace
}  // namespace demoserver
