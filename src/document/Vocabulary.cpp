#include "document/Vocabulary.h"

#include "document/Utilities.h"
#include "document/wbxml.h"

namespace AIRSYNC_STACK {

namespace {

// Spellings, duplicates and the "A:" aliases are the protocol's and stay as they are. An alias lets a tree
// name an element either way; read back, the first name comes. Page 6 knows the elements that it borrows
// from page 0 by their aliases alone.
// clang-format off

constexpr TagToken kSync[] = {
    {"Sync", 0x05}, {"Responses", 0x06}, {"Add", 0x07}, {"Change", 0x08}, {"Delete", 0x09}, {"Fetch", 0x0A},
    {"SyncKey", 0x0B}, {"ClientId", 0x0C}, {"ServerId", 0x0D}, {"Status", 0x0E}, {"Collection", 0x0F},
    {"Class", 0x10}, {"Version", 0x11}, {"CollectionId", 0x12}, {"GetChanges", 0x13}, {"MoreAvailable", 0x14},
    {"WindowSize", 0x15}, {"Commands", 0x16}, {"Options", 0x17}, {"FilterType", 0x18}, {"Truncation", 0x19},
    {"RTFTruncation", 0x1A}, {"Conflict", 0x1B}, {"Collections", 0x1C}, {"ApplicationData", 0x1D},
    {"DeletesAsMoves", 0x1E}, {"NotifyGUID", 0x1F}, {"Supported", 0x20}, {"A:SyncKey", 0x0B},
    {"A:FilterType", 0x18},
};

constexpr TagToken kContacts[] = {
    {"Anniversary", 0x05}, {"AssistantName", 0x06}, {"AssistnamePhoneNumber", 0x07}, {"Birthday", 0x08},
    {"Body", 0x09}, {"BodySize", 0x0A}, {"BodyTruncated", 0x0B}, {"Business2PhoneNumber", 0x0C},
    {"BusinessCity", 0x0D}, {"BusinessCountry", 0x0E}, {"BusinessPostalCode", 0x0F}, {"BusinessState", 0x10},
    {"BusinessStreet", 0x11}, {"BusinessFaxNumber", 0x12}, {"BusinessPhoneNumber", 0x13},
    {"CarPhoneNumber", 0x14}, {"Categories", 0x15}, {"Category", 0x16}, {"Children", 0x17}, {"Child", 0x18},
    {"CompanyName", 0x19}, {"Department", 0x1A}, {"Email1Address", 0x1B}, {"Email2Address", 0x1C},
    {"Email3Address", 0x1D}, {"FileAs", 0x1E}, {"FirstName", 0x1F}, {"Home2PhoneNumber", 0x20},
    {"HomeCity", 0x21}, {"HomeCountry", 0x22}, {"HomePostalCode", 0x23}, {"HomeState", 0x24},
    {"HomeStreet", 0x25}, {"HomeFaxNumber", 0x26}, {"HomePhoneNumber", 0x27}, {"JobTitle", 0x28},
    {"LastName", 0x29}, {"MiddleName", 0x2A}, {"MobilePhoneNumber", 0x2B}, {"OfficeLocation", 0x2C},
    {"OtherCity", 0x2D}, {"OtherCountry", 0x2E}, {"OtherPostalCode", 0x2F}, {"OtherState", 0x30},
    {"OtherStreet", 0x31}, {"PagerNumber", 0x32}, {"RadioPhoneNumber", 0x33}, {"Spouse", 0x34},
    {"Suffix", 0x35}, {"Title", 0x36}, {"WebPage", 0x37}, {"YOMICompanyName", 0x38}, {"YOMIFirstName", 0x39},
    {"YOMILastName", 0x3A}, {"CompressedRTF", 0x3B},
};

constexpr TagToken kMail[] = {
    {"Attachment", 0x05}, {"Attachments", 0x06}, {"AttName", 0x07}, {"AttSize", 0x08}, {"AttOID", 0x09},
    {"AttMethod", 0x0A}, {"AttRemoved", 0x0B}, {"Body", 0x0C}, {"BodySize", 0x0D}, {"BodyTruncated", 0x0E},
    {"DateReceived", 0x0F}, {"DisplayName", 0x10}, {"DisplayTo", 0x11}, {"Importance", 0x12},
    {"MessageClass", 0x13}, {"Subject", 0x14}, {"Read", 0x15}, {"To", 0x16}, {"Cc", 0x17}, {"From", 0x18},
    {"Replyto", 0x19}, {"AllDayEvent", 0x1A}, {"Categories", 0x1B}, {"Category", 0x1C}, {"DtStamp", 0x1D},
    {"EndTime", 0x1E}, {"InstanceType", 0x1F}, {"IntdBusyStatus", 0x20}, {"Location", 0x21},
    {"MeetingRequest", 0x22}, {"Organizer", 0x23}, {"RecurrenceID", 0x24}, {"Reminder", 0x25},
    {"ResponseRequested", 0x26}, {"Recurrences", 0x27}, {"Recurrence", 0x28}, {"RecurrenceType", 0x29},
    {"RecurrenceUntil", 0x2A}, {"RecurrenceOccurrences", 0x2B}, {"RecurrenceInterval", 0x2C},
    {"DayOfWeek", 0x2D}, {"DayOfMonth", 0x2E}, {"WeekOfMonth", 0x2F}, {"MonthOfYear", 0x30},
    {"StartTime", 0x31}, {"Sensitivity", 0x32}, {"Timezone", 0x33}, {"GlobalObjID", 0x34},
    {"ThreadTopic", 0x35},
};

constexpr TagToken kNotify[] = {
    {"AirNotify", 0x05}, {"Notify", 0x06}, {"Version", 0x07}, {"Lifetime", 0x08}, {"DeviceInfo", 0x09},
    {"Enable", 0x0A}, {"Folder", 0x0B}, {"ServerId", 0x0C}, {"DeviceAddress", 0x0D},
    {"ValidCarrierProfiles", 0x0E}, {"CarrierProfile", 0x0F}, {"Status", 0x10}, {"Responses", 0x11},
    {"Devices", 0x12}, {"Device", 0x13}, {"ID", 0x14}, {"Expiry", 0x15}, {"NotifyGUID", 0x16},
    {"FriendlyName", 0x17},
};

constexpr TagToken kCalendar[] = {
    {"Timezone", 0x05}, {"Alldayevent", 0x06}, {"Attendees", 0x07}, {"Attendee", 0x08},
    {"AttendeeEmail", 0x09}, {"AttendeeName", 0x0A}, {"Body", 0x0B}, {"BodyTruncated", 0x0C},
    {"Busystatus", 0x0D}, {"Categories", 0x0E}, {"Category", 0x0F}, {"CompressedRtf", 0x10},
    {"Dtstamp", 0x11}, {"Endtime", 0x12}, {"Exception", 0x13}, {"Exceptions", 0x14},
    {"ExceptionIsdeleted", 0x15}, {"ExceptionStarttime", 0x16}, {"Location", 0x17}, {"Meetingstatus", 0x18},
    {"OrganizerEmail", 0x19}, {"OrganizerName", 0x1A}, {"Recurrence", 0x1B}, {"RecurrenceType", 0x1C},
    {"RecurrenceUntil", 0x1D}, {"RecurrenceOccurrences", 0x1E}, {"RecurrenceInterval", 0x1F},
    {"RecurrenceDayofweek", 0x20}, {"RecurrenceDayofmonth", 0x21}, {"RecurrenceWeekofmonth", 0x22},
    {"RecurrenceMonthofyear", 0x23}, {"ReminderMinsbefore", 0x24}, {"Sensitivity", 0x25}, {"Subject", 0x26},
    {"Starttime", 0x27}, {"Uid", 0x28},
};

constexpr TagToken kMove[] = {
    {"Moves", 0x05}, {"Move", 0x06}, {"SrcMsgId", 0x07}, {"SrcFldId", 0x08}, {"DstFldId", 0x09},
    {"Response", 0x0A}, {"Status", 0x0B}, {"DstMsgId", 0x0C},
};

constexpr TagToken kItemEstimate[] = {
    {"GetItemEstimate", 0x05}, {"Version", 0x06}, {"Collections", 0x07}, {"Collection", 0x08},
    {"Class", 0x09}, {"CollectionId", 0x0A}, {"A:SyncKey", 0x0B}, {"Estimate", 0x0C}, {"Response", 0x0D},
    {"Status", 0x0E}, {"A:SyncKey", 0x0B}, {"A:FilterType", 0x18},
};

constexpr TagToken kFolderHierarchy[] = {
    {"Folders", 0x05}, {"Folder", 0x06}, {"DisplayName", 0x07}, {"ServerId", 0x08}, {"ParentId", 0x09},
    {"Type", 0x0A}, {"Response", 0x0B}, {"Status", 0x0C}, {"ContenteClass", 0x0D}, {"Changes", 0x0E},
    {"Add", 0x0F}, {"Delete", 0x10}, {"Update", 0x11}, {"SyncKey", 0x12}, {"CreateCmd", 0x13},
    {"DeleteCmd", 0x14}, {"UpdateCmd", 0x15}, {"FolderSync", 0x16}, {"Count", 0x17}, {"Version", 0x18},
};

constexpr TagToken kMeetingResponse[] = {
    {"CalId", 0x05}, {"CollectionId", 0x06}, {"MeetingResponse", 0x07}, {"ReqId", 0x08}, {"Request", 0x09},
    {"Result", 0x0A}, {"Status", 0x0B}, {"UserResponse", 0x0C}, {"Version", 0x0D},
};

// clang-format on

const unsigned kTokens = 0x40;
const unsigned kHashSlots =
    128;  // more than twice the longest list, so that searches end after a step or two
const UINT8 kNone = 0xFF;

// Where the entries of a list are: by token at its place, by tag at its hash or behind it.
struct TagIndex {
  UINT8 byToken[kTokens];
  UINT8 byTag[kHashSlots];
};

constexpr unsigned HashOf(const char* tag) {
  UINT32 hash = 0;
  for (; *tag; ++tag) hash = hash * 31 + static_cast<UINT8>(*tag);
  return (hash ^ (hash >> 7)) % kHashSlots;
}

template <unsigned count>
constexpr TagIndex IndexOf(const TagToken (&entries)[count]) {
  static_assert(count < kHashSlots / 2, "the searches need free slots");
  TagIndex index = {};
  for (UINT8& entry : index.byToken) entry = kNone;
  for (UINT8& entry : index.byTag) entry = kNone;
  for (unsigned i = 0; i < count; ++i) {
    UINT8& first = index.byToken[entries[i].token];
    if (first == kNone) first = static_cast<UINT8>(i);
    // A duplicate comes to stand behind the first one, where no search gets to.
    unsigned slot = HashOf(entries[i].tag);
    while (index.byTag[slot] != kNone) slot = (slot + 1) % kHashSlots;
    index.byTag[slot] = static_cast<UINT8>(i);
  }
  return index;
}

struct CodePage {
  const char* nameSpace;
  TagList tags;
  TagIndex index;
};

template <unsigned count>
constexpr CodePage MakePage(const char* nameSpace, const TagToken (&entries)[count]) {
  return {nameSpace, {entries, count}, IndexOf(entries)};
}

// Computed by the compiler.
constexpr CodePage kPages[kCodePages] = {
    MakePage("Sync:", kSync),
    MakePage("POOMCONTACTS:", kContacts),
    MakePage("POOMMAIL:", kMail),
    MakePage("AirNotify:", kNotify),
    MakePage("POOMCAL:", kCalendar),
    MakePage("Move:", kMove),
    MakePage("GetItemEstimate:", kItemEstimate),
    MakePage("FolderHierarchy:", kFolderHierarchy),
    MakePage("MeetingResponse:", kMeetingResponse),
};

}  // namespace

const char* NamespaceOfPage(UINT8 page) { return kPages[page].nameSpace; }

TagList TagsOfPage(UINT8 page) { return kPages[page].tags; }

UINT8 TokenOfTag(UINT8 page, const char* tag) {
  if (page >= kCodePages) return 0;
  const CodePage& codePage = kPages[page];
  for (unsigned slot = HashOf(tag);; slot = (slot + 1) % kHashSlots) {
    const UINT8 entry = codePage.index.byTag[slot];
    if (entry == kNone) return 0;
    if (SmlStrcmp(codePage.tags.entries[entry].tag, tag) == 0) return codePage.tags.entries[entry].token;
  }
}

const char* TagOfToken(UINT8 page, UINT8 token) {
  if (page >= kCodePages || token >= kTokens) return nullptr;
  const UINT8 entry = kPages[page].index.byToken[token];
  return entry == kNone ? nullptr : kPages[page].tags.entries[entry].tag;
}

UINT8 LookupCodePage(const char* text) {
  for (UINT8 page = 0; page < kCodePages; ++page) {
    if (SameText(kPages[page].nameSpace, text)) return page;
  }
  return 0;
}

}  // namespace AIRSYNC_STACK
