// Takes the address of everything that the installed headers declare: what a header shows, a host can link.
// package_test.sh compares the names here with those in the headers.
#include <cstdio>

#include "api/AirSync.h"
#include "api/AirSyncDBInterface.h"
#include "api/CalendarFields.h"
#include "api/ContactFields.h"
#include "api/EmailFields.h"
#include "api/ItemFields.h"
#include "api/ItemRecords.h"
#include "api/Records.h"
#include "api/ResultCodes.h"
#include "http/Transport.h"
#include "support/AdapterFree.h"
#include "support/Log.h"
#include "support/Porting.h"
#include "support/ServerId.h"
#include "support/Time.h"
#include "support/types.h"

using namespace AIRSYNC_STACK;

namespace {

int taken = 0;

template <typename... Addresses>
void Take(Addresses... addresses) {
  const bool there[] = {(addresses != nullptr)...};
  for (const bool each : there) taken += each ? 1 : 0;
}

void TakeTheFacade() {
  Take(&AirSync::getInstance, &AirSync::destroyInstance, &AirSync::Initialize, &AirSync::Connect,
       &AirSync::Disconnect, &AirSync::Uninitialize, &AirSync::CancelSync, &AirSync::CancelRequested,
       &AirSync::Sync, &AirSync::FolderSync, &AirSync::GetHierarchy, &AirSync::FolderCreate,
       &AirSync::FolderDelete, &AirSync::FolderUpdate, &AirSync::Fetch, &AirSync::GetItemEstimate,
       &AirSync::SendMail, &AirSync::SmartReply, &AirSync::SmartForward, &AirSync::GetAttachment,
       &AirSync::MoveItems, &AirSync::MeetingResponse, &AirSync::GetOptions, &AirSync::NotifyEnable,
       &AirSync::GetCarrierList, &AirSync::SetDeviceAddress, &AirSync::NotifyRecv);
}

void TakeTheHostsInterfaces() {
  using Transport = AirSyncTransportInterface;
  Take(&Transport::Open, &Transport::SendHeader, &Transport::EndRequest, &Transport::Write,
       &Transport::ReadResponseHead, &Transport::Read, &Transport::Close, &Transport::Reserved7,
       &Transport::Reserved8, &Transport::Cancel);
  using Storage = AirSyncDBInterface;
  Take(&Storage::StoreSyncKey, &Storage::Reserved1, &Storage::GetFolderList, &Storage::SetNotifyFolderStatus,
       &Storage::SetItemEstimate, &Storage::GetNextChange, &Storage::Reserved6, &Storage::AddResult,
       &Storage::DeleteResult, &Storage::ChangeResult, &Storage::FetchedItem, &Storage::AddServerItem,
       &Storage::DeleteServerItem, &Storage::ChangeServerItem, &Storage::Reserved14, &Storage::Reserved15,
       &Storage::Reserved16, &Storage::UpdateFolder);
  Take(static_cast<void (Appender::*)(const char*)>(&Appender::write),
       static_cast<void (Appender::*)(unsigned char)>(&Appender::write),
       static_cast<void (Appender::*)(unsigned int)>(&Appender::write), &Appender::endEntry);
}

void TakeTheLog() {
  using Source = AS_LOG_MESSAGE_SOURCE_T;
  using Level = AS_LOG_LEVEL_T;
  Take(&Log::getInstance, &Log::destroyInstance, &Log::SetLevel,
       static_cast<void (*)(Source, Level, const char*)>(&Log::write),
       static_cast<void (*)(Source, Level, const char*, const char*)>(&Log::write),
       static_cast<void (*)(Source, Level, const char*, unsigned int)>(&Log::write),
       static_cast<void (*)(Source, Level, const char*, bool)>(&Log::write),
       static_cast<void (*)(Source, Level, const char*, const unsigned char*, unsigned int)>(&Log::write));
}

void TakeTheRest() {
  Take(&AdapterFree, &mkgmtime, &AdjustTime, &ServerId::toChar, &ServerId::fromChar, &ServerId::compare,
       &ServerId::kLength, &AS_ZONE_SIZE);
  Take(&AS_CONTACT_FIELDS, &AS_CONTACT_FIELD_COUNT, &AS_CALENDAR_FIELDS, &AS_EXCEPTION_FIELDS,
       &AS_RECURRENCE_FIELDS, &AS_EMAIL_FIELDS, &AS_ATTACHMENT_FIELDS, &AS_MEETING_REQUEST_FIELDS,
       &AS_MEETING_RECURRENCE_FIELDS);
}

// The host's own, which the program brings.
void TakeThePortingFunctions() {
  Take(&SmlMalloc, &SmlFree, &SmlRealloc, &SmlMemcpy, &SmlMemmove, &SmlMemset, &SmlStrlen, &SmlStrcpy,
       &SmlStrncpy, &SmlStrcat, &SmlStrcmp, &SmlStrncmp, &SmlStrchr, &SmlStrstr, &SmlSprintf, &SmlAtoi,
       &SmlUnexpected);
}

class QuietAppender : public Appender {
 public:
  void write(const char*) override {}
  void write(unsigned char) override {}
  void write(unsigned int) override {}
  void endEntry() override {}
};

}  // namespace

int main() {
  const QuietAppender appender;
  Take(&appender);
  TakeTheFacade();
  TakeTheHostsInterfaces();
  TakeTheLog();
  TakeTheRest();
  TakeThePortingFunctions();
  std::printf("%d addresses\n", taken);
  return 0;
}
