#include "wbxml/Vocabulary.h"

#include <array>
#include <span>

namespace demoserver {
namespace {

struct Entry {
  std::string_view name;
  std::uint8_t token;
};

// Within a page the first entry with a name or a token counts; "A:" names are aliases that requests may use.
constexpr Entry kSync[] = {
    {"Sync", 0x05},
    {"Responses", 0x06},
    {"Add", 0x07},
    {"Change", 0x08},
    {"Delete", 0x09},
    {"Fetch", 0x0A},
    {"SyncKey", 0x0B},
    {"ClientId", 0x0C},
    {"ServerId", 0x0D},
    {"Status", 0x0E},
    {"Collection", 0x0F},
    {"Class", 0x10},
    {"Version", 0x11},
    {"CollectionId", 0x12},
    {"GetChanges", 0x13},
    {"MoreAvailable", 0x14},
    {"WindowSize", 0x15},
    {"Commands", 0x16},
    {"Options", 0x17},
    {"FilterType", 0x18},
    {"Truncation", 0x19},
    {"RTFTruncation", 0x1A},
    {"Conflict", 0x1B},
    {"Collections", 0x1C},
    {"ApplicationData", 0x1D},
    {"DeletesAsMoves", 0x1E},
    {"NotifyGUID", 0x1F},
    {"Supported", 0x20},
    {"A:SyncKey", 0x0B},
    {"A:FilterType", 0x18},
};

constexpr Entry kContacts[] = {
    {"Anniversary", 0x05},
    {"AssistantName", 0x06},
    {"AssistnamePhoneNumber", 0x07},
    {"Birthday", 0x08},
    {"Body", 0x09},
    {"BodySize", 0x0A},
    {"BodyTruncated", 0x0B},
    {"Business2PhoneNumber", 0x0C},
    {"BusinessCity", 0x0D},
    {"BusinessCountry", 0x0E},
    {"BusinessPostalCode", 0x0F},
    {"BusinessState", 0x10},
    {"BusinessStreet", 0x11},
    {"BusinessFaxNumber", 0x12},
    {"BusinessPhoneNumber", 0x13},
    {"CarPhoneNumber", 0x14},
    {"Categories", 0x15},
    {"Category", 0x16},
    {"Children", 0x17},
    {"Child", 0x18},
    {"CompanyName", 0x19},
    {"Department", 0x1A},
    {"Email1Address", 0x1B},
    {"Email2Address", 0x1C},
    {"Email3Address", 0x1D},
    {"FileAs", 0x1E},
    {"FirstName", 0x1F},
    {"Home2PhoneNumber", 0x20},
    {"HomeCity", 0x21},
    {"HomeCountry", 0x22},
    {"HomePostalCode", 0x23},
    {"HomeState", 0x24},
    {"HomeStreet", 0x25},
    {"HomeFaxNumber", 0x26},
    {"HomePhoneNumber", 0x27},
    {"JobTitle", 0x28},
    {"LastName", 0x29},
    {"MiddleName", 0x2A},
    {"MobilePhoneNumber", 0x2B},
    {"OfficeLocation", 0x2C},
    {"OtherCity", 0x2D},
    {"OtherCountry", 0x2E},
    {"OtherPostalCode", 0x2F},
    {"OtherState", 0x30},
    {"OtherStreet", 0x31},
    {"PagerNumber", 0x32},
    {"RadioPhoneNumber", 0x33},
    {"Spouse", 0x34},
    {"Suffix", 0x35},
    {"Title", 0x36},
    {"WebPage", 0x37},
    {"YOMICompanyName", 0x38},
    {"YOMIFirstName", 0x39},
    {"YOMILastName", 0x3A},
    {"CompressedRTF", 0x3B},
};

constexpr Entry kMail[] = {
    {"Attachment", 0x05},
    {"Attachments", 0x06},
    {"AttName", 0x07},
    {"AttSize", 0x08},
    {"AttOID", 0x09},
    {"AttMethod", 0x0A},
    {"AttRemoved", 0x0B},
    {"Body", 0x0C},
    {"BodySize", 0x0D},
    {"BodyTruncated", 0x0E},
    {"DateReceived", 0x0F},
    {"DisplayName", 0x10},
    {"DisplayTo", 0x11},
    {"Importance", 0x12},
    {"MessageClass", 0x13},
    {"Subject", 0x14},
    {"Read", 0x15},
    {"To", 0x16},
    {"Cc", 0x17},
    {"From", 0x18},
    {"Replyto", 0x19},
    {"AllDayEvent", 0x1A},
    {"Categories", 0x1B},
    {"Category", 0x1C},
    {"DtStamp", 0x1D},
    {"EndTime", 0x1E},
    {"InstanceType", 0x1F},
    {"IntdBusyStatus", 0x20},
    {"Location", 0x21},
    {"MeetingRequest", 0x22},
    {"Organizer", 0x23},
    {"RecurrenceID", 0x24},
    {"Reminder", 0x25},
    {"ResponseRequested", 0x26},
    {"Recurrences", 0x27},
    {"Recurrence", 0x28},
    {"RecurrenceType", 0x29},
    {"RecurrenceUntil", 0x2A},
    {"RecurrenceOccurrences", 0x2B},
    {"RecurrenceInterval", 0x2C},
    {"DayOfWeek", 0x2D},
    {"DayOfMonth", 0x2E},
    {"WeekOfMonth", 0x2F},
    {"MonthOfYear", 0x30},
    {"StartTime", 0x31},
    {"Sensitivity", 0x32},
    {"Timezone", 0x33},
    {"GlobalObjID", 0x34},
    {"ThreadTopic", 0x35},
};

constexpr Entry kNotify[] = {
    {"AirNotify", 0x05},      {"Notify", 0x06},
    {"Version", 0x07},        {"Lifetime", 0x08},
    {"DeviceInfo", 0x09},     {"Enable", 0x0A},
    {"Folder", 0x0B},         {"ServerId", 0x0C},
    {"DeviceAddress", 0x0D},  {"ValidCarrierProfiles", 0x0E},
    {"CarrierProfile", 0x0F}, {"Status", 0x10},
    {"Responses", 0x11},      {"Devices", 0x12},
    {"Device", 0x13},         {"ID", 0x14},
    {"Expiry", 0x15},         {"NotifyGUID", 0x16},
    {"FriendlyName", 0x17},
};

constexpr Entry kCalendar[] = {
    {"Timezone", 0x05},
    {"Alldayevent", 0x06},
    {"Attendees", 0x07},
    {"Attendee", 0x08},
    {"AttendeeEmail", 0x09},
    {"AttendeeName", 0x0A},
    {"Body", 0x0B},
    {"BodyTruncated", 0x0C},
    {"Busystatus", 0x0D},
    {"Categories", 0x0E},
    {"Category", 0x0F},
    {"CompressedRtf", 0x10},
    {"Dtstamp", 0x11},
    {"Endtime", 0x12},
    {"Exception", 0x13},
    {"Exceptions", 0x14},
    {"ExceptionIsdeleted", 0x15},
    {"ExceptionStarttime", 0x16},
    {"Location", 0x17},
    {"Meetingstatus", 0x18},
    {"OrganizerEmail", 0x19},
    {"OrganizerName", 0x1A},
    {"Recurrence", 0x1B},
    {"RecurrenceType", 0x1C},
    {"RecurrenceUntil", 0x1D},
    {"RecurrenceOccurrences", 0x1E},
    {"RecurrenceInterval", 0x1F},
    {"RecurrenceDayofweek", 0x20},
    {"RecurrenceDayofmonth", 0x21},
    {"RecurrenceWeekofmonth", 0x22},
    {"RecurrenceMonthofyear", 0x23},
    {"ReminderMinsbefore", 0x24},
    {"Sensitivity", 0x25},
    {"Subject", 0x26},
    {"Starttime", 0x27},
    {"Uid", 0x28},
};

constexpr Entry kMove[] = {
    {"Moves", 0x05},    {"Move", 0x06},     {"SrcMsgId", 0x07}, {"SrcFldId", 0x08},
    {"DstFldId", 0x09}, {"Response", 0x0A}, {"Status", 0x0B},   {"DstMsgId", 0x0C},
};

constexpr Entry kEstimate[] = {
    {"GetItemEstimate", 0x05}, {"Version", 0x06},      {"Collections", 0x07}, {"Collection", 0x08},
    {"Class", 0x09},           {"CollectionId", 0x0A}, {"A:SyncKey", 0x0B},   {"Estimate", 0x0C},
    {"Response", 0x0D},        {"Status", 0x0E},       {"A:SyncKey", 0x0B},   {"A:FilterType", 0x18},
};

constexpr Entry kFolders[] = {
    {"Folders", 0x05},       {"Folder", 0x06},     {"DisplayName", 0x07}, {"ServerId", 0x08},
    {"ParentId", 0x09},      {"Type", 0x0A},       {"Response", 0x0B},    {"Status", 0x0C},
    {"ContenteClass", 0x0D}, {"Changes", 0x0E},    {"Add", 0x0F},         {"Delete", 0x10},
    {"Update", 0x11},        {"SyncKey", 0x12},    {"CreateCmd", 0x13},   {"DeleteCmd", 0x14},
    {"UpdateCmd", 0x15},     {"FolderSync", 0x16}, {"Count", 0x17},       {"Version", 0x18},
};

constexpr Entry kMeeting[] = {
    {"CalId", 0x05},  {"CollectionId", 0x06}, {"MeetingResponse", 0x07}, {"ReqId", 0x08},   {"Request", 0x09},
    {"Result", 0x0A}, {"Status", 0x0B},       {"UserResponse", 0x0C},    {"Version", 0x0D},
};

constexpr std::array<std::span<const Entry>, kPageCount> kPages = {
    kSync, kContacts, kMail, kNotify, kCalendar, kMove, kEstimate, kFolders, kMeeting};

}  // namespace

std::uint8_t tokenOf(Page page, std::string_view name) {
  for (const Entry& entry : kPages[static_cast<std::size_t>(page)])
    if (entry.name == name) return entry.token;
  return 0;
}

std::string_view nameOf(Page page, std::uint8_t token) {
  for (const Entry& entry : kPages[static_cast<std::size_t>(page)])
    if (entry.token == token) return entry.name;
  return {};
}

}  // namespace demoserver
