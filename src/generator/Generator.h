// Generator: builds the element tree of every request.
//
// A tree is built bottom-up: each builder returns a new element with its children in place, or null when
// there is nothing to write, and the caller attaches it. So an element's children keep the code page that it
// had while they were attached, and the element takes its parent's afterwards. The caller of a request
// builder destroys the tree.
#ifndef KROAIRSYNC_GENERATOR_GENERATOR_H
#define KROAIRSYNC_GENERATOR_GENERATOR_H

#include "api/AirSyncDBInterface.h"
#include "api/ItemFields.h"
#include "document/Element.h"
#include "support/Log.h"

namespace AIRSYNC_STACK {

enum GENERATOR_STATUS : int {
  GENERATOR_MORE = 0,     // a change did not fit: it leads the next request
  GENERATOR_DONE = 1,     // nothing more to send
  GENERATOR_ERROR = 2,    // a change is too large to go out normally
  GENERATOR_NOT_RUN = 3,  // what a caller starts with
};

class Generator {
 public:
  Generator(AirSyncDBInterface* storage, ENCODINGTYPE encoding, Log* log);
  virtual ~Generator() = default;
  Generator(const Generator&) = delete;
  Generator& operator=(const Generator&) = delete;

  /// Builds one Sync request for `folder`: the initial handshake where its key is "0", otherwise with as many
  /// local changes as fit. `notifyKey` is the value of NotifyGUID where the folder asks for one; `comms`
  /// measures.
  sml_element* Sync(Communications* comms, FOLDER_INFO* folder, const _SYNC_KEY& notifyKey,
                    GENERATOR_STATUS& status);

  /// The folder requests, with the hierarchy's key. Null for a null folder.
  sml_element* FolderSync(const _SYNC_KEY& key);
  sml_element* FolderCreate(const BASE_FOLDER* folder, const _SYNC_KEY& key);
  sml_element* FolderDelete(const FOLDER_ID& id, const _SYNC_KEY& key);
  sml_element* FolderUpdate(const BASE_FOLDER* folder, const _SYNC_KEY& key);

  /// The notification requests. With a lifetime of 0, NotifyEnable switches notification off.
  sml_element* GetCarrierList();
  sml_element* SetDeviceAddress(const unsigned char* carrier, const char* friendlyName,
                                const char* deviceAddress);
  sml_element* NotifyEnable(FOLDER_INFO** folders, int count, unsigned int lifetime, const char* friendlyName,
                            const char* deviceAddress, const unsigned char* carrier);

  /// Asks how many items wait in each of the folders that take part.
  sml_element* GetItemEstimate(FOLDER_INFO** folders, int count);

  /// Moves items; the three arrays run in step.
  sml_element* MoveItems(const SERVER_ID* items, const FOLDER_ID* sources, const FOLDER_ID* destinations,
                         int count);

  /// Asks for one item in full, by way of a Sync request.
  sml_element* Fetch(FOLDER_INFO* folder, const SERVER_ID& item);

  sml_element* MeetingResponse(const SERVER_ID& request, const FOLDER_ID& collection,
                               AS_MEETING_RESPONSE_ENUM_T response);

  /// A synchronisation of `folder` begins. A command that is pending leads its first request with commands;
  /// it is given up where it belongs to another folder, or where the folder begins anew (key "0").
  void BeginSync(const FOLDER_INFO& folder);

  /// Gives up a command that is pending.
  void DropPending();

  /// All tracked memory is gone: a pending command with it. The host delivers its change again.
  void ForgetTrackedMemory();

  // The parts of a Sync request.
  sml_element* Collections(const _SYNC_KEY& notifyKey);
  sml_element* Collection(const _SYNC_KEY& notifyKey);
  sml_element* Class();
  sml_element* Synckey(const _SYNC_KEY& key);
  sml_element* CollectionId();
  sml_element* Supported(DATATYPE type);
  sml_element* NotifyGUID(const _SYNC_KEY& notifyKey);
  sml_element* DeletesAsMoves();
  sml_element* GetChanges();
  sml_element* WindowSize();
  sml_element* Options();
  sml_element* Commands();
  sml_element* Add();
  sml_element* Change();
  sml_element* Delete();
  sml_element* ClientID(unsigned int clientId);
  sml_element* ServerID(SERVER_ID& id);
  /// The item's data, for a Change and for an Add; the argument receives the current change's id.
  sml_element* ApplicationData(SERVER_ID& id);
  sml_element* ApplicationData(unsigned int& clientId);
  sml_element* Read(AS_EMAIL_T* email);

  // The version of an estimate request; no request carries it.
  sml_element* EstimateVersion();

  // The parts of a folder request.
  sml_element* FolderParentId(const BASE_FOLDER& folder);
  sml_element* FolderDisplayName(const BASE_FOLDER& folder);
  sml_element* FolderType(const BASE_FOLDER& folder);
  sml_element* FolderCollId(const FOLDER_ID& id);

  /// An element with a text; null for a null or empty text. This is how an absent field is left out.
  sml_element* buildDataElement(const char* tag, unsigned char* value);

  // The fields of a contact, each as its element, or null where the contact does not have it.
  sml_element* Anniversary(AS_CONTACT_T* contact);
  sml_element* AssistantName(AS_CONTACT_T* contact);
  sml_element* AssistantPhoneNumber(AS_CONTACT_T* contact);
  sml_element* Birthday(AS_CONTACT_T* contact);
  sml_element* Body(AS_CONTACT_T* contact);
  sml_element* Business2PhoneNumber(AS_CONTACT_T* contact);
  sml_element* BusinessCity(AS_CONTACT_T* contact);
  sml_element* BusinessCountry(AS_CONTACT_T* contact);
  sml_element* BusinessPostalCode(AS_CONTACT_T* contact);
  sml_element* BusinessState(AS_CONTACT_T* contact);
  sml_element* BusinessStreet(AS_CONTACT_T* contact);
  sml_element* BusinessFaxNumber(AS_CONTACT_T* contact);
  sml_element* BusinessTelephoneNumber(AS_CONTACT_T* contact);
  sml_element* CarPhoneNumber(AS_CONTACT_T* contact);
  sml_element* Categories(AS_CONTACT_T* contact);
  sml_element* Children(AS_CONTACT_T* contact);
  sml_element* CompanyName(AS_CONTACT_T* contact);
  sml_element* Department(AS_CONTACT_T* contact);
  sml_element* Email1Address(AS_CONTACT_T* contact);
  sml_element* Email2Address(AS_CONTACT_T* contact);
  sml_element* Email3Address(AS_CONTACT_T* contact);
  sml_element* FileAs(AS_CONTACT_T* contact);
  sml_element* FirstName(AS_CONTACT_T* contact);
  sml_element* Home2PhoneNumber(AS_CONTACT_T* contact);
  sml_element* HomeCity(AS_CONTACT_T* contact);
  sml_element* HomeCountry(AS_CONTACT_T* contact);
  sml_element* HomePostalCode(AS_CONTACT_T* contact);
  sml_element* HomeState(AS_CONTACT_T* contact);
  sml_element* HomeStreet(AS_CONTACT_T* contact);
  sml_element* HomeFaxNumber(AS_CONTACT_T* contact);
  sml_element* HomePhoneNumber(AS_CONTACT_T* contact);
  sml_element* JobTitle(AS_CONTACT_T* contact);
  sml_element* LastName(AS_CONTACT_T* contact);
  sml_element* MiddleName(AS_CONTACT_T* contact);
  sml_element* MobileTelephoneNumber(AS_CONTACT_T* contact);
  sml_element* OfficeLocation(AS_CONTACT_T* contact);
  sml_element* OtherCity(AS_CONTACT_T* contact);
  sml_element* OtherCountry(AS_CONTACT_T* contact);
  sml_element* OtherPostalCode(AS_CONTACT_T* contact);
  sml_element* OtherState(AS_CONTACT_T* contact);
  sml_element* OtherStreet(AS_CONTACT_T* contact);
  sml_element* PagerNumber(AS_CONTACT_T* contact);
  sml_element* RadioPhoneNumber(AS_CONTACT_T* contact);
  sml_element* Spouse(AS_CONTACT_T* contact);
  sml_element* Suffix(AS_CONTACT_T* contact);
  sml_element* Title(AS_CONTACT_T* contact);
  sml_element* WebPage(AS_CONTACT_T* contact);
  sml_element* YomiCompanyName(AS_CONTACT_T* contact);
  sml_element* YomiFirstName(AS_CONTACT_T* contact);
  sml_element* YomiLastName(AS_CONTACT_T* contact);

 private:
  struct ItemClass;
  static const ItemClass kItemClasses[];

  const ItemClass& FolderClass() const;
  static const ItemClass* ClassOf(const FOLDER_INFO& folder);
  static const char* ClassName(const FOLDER_INFO& folder);
  sml_element* FilterType(const char* tag, const FOLDER_INFO& folder);
  sml_element* EstimateCollection(const FOLDER_INFO& folder);
  sml_element* DeviceInfo(const char* friendlyName, const char* deviceAddress);
  sml_element* NumberElement(const char* tag, INT32 value);
  sml_element* BuildCommand(int kind);
  UINT16 Measure(const sml_element* element);
  bool AttachPending(sml_element* commands, unsigned int& size);
  sml_element* EndCommands(sml_element* commands);
  sml_element* ItemData(bool add);
  void ContactChildren(sml_element* data, bool add);
  void CalendarChildren(sml_element* data, bool add);
  void EmailChildren(sml_element* data, bool add);
  sml_element* PackedList(const char* listTag, const char* entryTag, const char* list, UINT8 codePage);
  void LogLine(AS_LOG_LEVEL_T level, const char* text) const;
  void LogLine(AS_LOG_LEVEL_T level, const char* label, const char* value) const;

  static int FullYear(const struct tm& time);
  static int FullMonth(const struct tm& time);

  // The parts of an event.
  template <typename Record>
  sml_element* FieldElement(const AS_FIELD_T<Record>& field, const Record& record);
  sml_element* NumberData(const char* tag, INT32 value);
  sml_element* CompactTime(const char* tag, const struct tm* time);
  sml_element* TimeZone(const char* tag, const UINT8* zone);
  sml_element* Attendees(const char* tag, const char* list);
  sml_element* Attendee(char* entry);
  sml_element* Recurrence(const AS_CALENDAR_T& event);
  sml_element* Exceptions(const AS_CALENDAR_T& event);
  sml_element* Exception(const AS_EXCEPTION_T& exception);

  // The parts of a contact.
  template <char* AS_CONTACT_T::*kField>
  sml_element* ContactText(AS_CONTACT_T* contact);
  sml_element* ContactDate(const char* tag, const struct tm* date);

  GENERATOR_STATUS status_ = GENERATOR_NOT_RUN;
  FOLDER_INFO* folder_ = nullptr;
  AirSyncDBInterface* storage_;
  Communications* comms_ = nullptr;
  sml_element* pending_ = nullptr;
  ENCODINGTYPE encoding_;
  Log* log_;
  void* item_ = nullptr;
  SERVER_ID serverId_ = {};
  UINT32 clientId_ = 0;
  FOLDER_ID pendingFolder_ = {};  // whose the pending command is
  // The pending command went into the last request although it is too large: that request owns it.
  bool pendingAttached_ = false;
};

}  // namespace AIRSYNC_STACK

#endif
