// Core records: what crosses the border between the host and the library besides items.
//
// All of them are fixed-size records of inline text and 32-bit integers. None owns memory, so they may be
// copied byte for byte. Texts are 8-bit (UTF-8 where the server may show them to people) and end at their
// first NUL; a text that fills its whole field needs no terminator: the library never reads past the field.
// Capacities below count the terminator.
#ifndef KROAIRSYNC_API_RECORDS_H
#define KROAIRSYNC_API_RECORDS_H

#include <cstddef>

#include "api/ResultCodes.h"
#include "support/types.h"

namespace AIRSYNC_STACK {

// A collection's or the hierarchy's sync key. "0" means that there is no key yet: the initial exchange.
struct _SYNC_KEY {
  char text[68];
};

// An item's identifier, assigned by the server. The empty text and "0" both mean that there is none.
// At most 48 characters are used.
struct SERVER_ID {
  char text[52];
};

// A folder's (collection's) identifier, assigned by the server.
struct FOLDER_ID {
  char text[68];
};

// The account and the server. AirSync::Initialize copies it; Connect hands a copy to the transport's Open.
struct SERVER_INFO {
  char host[256];      // server host name, written after "Host:"; a port that is not the scheme's own goes
                       // here, too, as "mail.example.com:8443"
  char user[256];      // account user name: query and credentials
  char password[256];  // account password: credentials only
  char deviceType[33];
  char deviceId[65];
  char domain[256];    // the credentials are domain, "/" and user
  char path[256];      // request path, written between the method and "?"
  char userAgent[70];  // empty: "Tarn-TestClient/0.1" is sent
};
static_assert(offsetof(SERVER_INFO, user) == 256 && offsetof(SERVER_INFO, password) == 512 &&
                  offsetof(SERVER_INFO, deviceType) == 768 && offsetof(SERVER_INFO, deviceId) == 801 &&
                  offsetof(SERVER_INFO, domain) == 866 && offsetof(SERVER_INFO, path) == 1122 &&
                  offsetof(SERVER_INFO, userAgent) == 1378 && sizeof(SERVER_INFO) == 1448,
              "texts, one behind the other, on every machine");

// One folder of the hierarchy.
struct BASE_FOLDER {
  char displayName[64];
  // 1 folder of the user's, 2 inbox, 3 drafts, 4 deleted items, 5 sent items, 6 outbox, 7 tasks, 8 calendar,
  // 9 contacts, 10 notes, 11 journal; further folders of the user's: 12 mail, 13 calendar, 14 contacts,
  // 15 tasks, 16 journal, 17 notes. What can be synchronised are mail (1 to 6, 12), calendars and contacts;
  // a client may create folders of the types 1 and 12 to 17.
  INT32 type;
  FOLDER_ID serverId;
  FOLDER_ID parentId;  // "0" for a folder at the root
};
static_assert(offsetof(BASE_FOLDER, type) == 64 && offsetof(BASE_FOLDER, serverId) == 68 &&
                  offsetof(BASE_FOLDER, parentId) == 136 && sizeof(BASE_FOLDER) == 204,
              "nothing stands between the fields, on every machine");

// What a folder holds.
enum DATATYPE : INT32 {
  DATATYPE_CONTACTS = 0,
  DATATYPE_CALENDAR = 1,
  DATATYPE_EMAIL = 2,
};

// The name of an element that the device supports, for the initial exchange of a folder.
typedef char SUPPORTED_TAG[64];

// A folder that takes part in synchronisation. The host owns it and passes it by pointer; the library
// writes nothing into it (what changes goes through the storage interface).
struct FOLDER_INFO {
  BASE_FOLDER folder;  // its serverId is the collection identifier sent, and the one expected in responses
  DATATYPE dataType;
  INT32 handle;  // the host's own, passed first to every storage call about this folder
  // 0 both ways; 1 send only: the server's changes are not asked for; 2 receive only: the client's own
  // commands are left out, and deletes are not asked to be moves (to the deleted items).
  INT32 syncMode;
  _SYNC_KEY syncKey;  // the collection's current key
  // How much of a Body the server sends: 0 nothing; 1 to 7 at most 4,096, 5,120, 7,168, 10,240, 20,480,
  // 51,200 and 102,400 characters, where servers differ in what they count and in the steps; 8 and 9 all of
  // it. An item whose Body was cut has BodyTruncated set.
  INT32 truncation;
  // When both sides changed an item: 0 the client's change wins, 1 the server's. Not every server obeys.
  INT32 conflict;
  UINT8 notifyEnabled;  // 1: the folder is named in a notification-enable request
  UINT8 notifyGuid;     // 1: a sync request carries the notification GUID
  UINT8 selected;       // 1: the folder takes part in synchronisation; otherwise Sync refuses it
  // The filter type says how far back items go: 0 all; 1 one day, 2 three days, 3 one week (these of mail
  // only), 4 two weeks, 5 one month; 6 three months, 7 six months (these of calendars only).
  union {
    struct {
      const SUPPORTED_TAG* supported;  // null: no list is sent
      UINT8 supportedCount;
    } contacts;
    struct {
      INT32 filterType;
      const SUPPORTED_TAG* supported;
      UINT8 supportedCount;
    } calendar;
    struct {
      INT32 filterType;
    } email;
  } options;  // by dataType
};
static_assert(offsetof(FOLDER_INFO, dataType) == 204 && offsetof(FOLDER_INFO, handle) == 208 &&
                  offsetof(FOLDER_INFO, syncMode) == 212 && offsetof(FOLDER_INFO, syncKey) == 216 &&
                  offsetof(FOLDER_INFO, truncation) == 284 && offsetof(FOLDER_INFO, conflict) == 288 &&
                  offsetof(FOLDER_INFO, notifyEnabled) == 292 && offsetof(FOLDER_INFO, notifyGuid) == 293 &&
                  offsetof(FOLDER_INFO, selected) == 294 && offsetof(FOLDER_INFO, options) == 296,
              "the fields stand at the same places on every machine");
static_assert(sizeof(FOLDER_INFO) == 296 + 3 * sizeof(void*), "three words of options: 308 or 320 bytes");

// The user's answer to a meeting request.
enum AS_MEETING_RESPONSE_ENUM_T : INT32 {
  AS_MEETING_RESPONSE_ACCEPT = 1,
  AS_MEETING_RESPONSE_TENTATIVE = 2,
  AS_MEETING_RESPONSE_DECLINE = 3,
};

// How documents are encoded, and which content type a request declares.
enum ENCODINGTYPE : INT32 {
  ENCODING_XML = 0,          // "application/vnd.syncml+xml"
  ENCODING_WBXML = 1,        // "application/vnd.ms-sync.wbxml"
  ENCODING_RAW_MESSAGE = 2,  // "message/rfc822"
  ENCODING_NO_BODY = 3,      // neither "Accept:" nor "Content-Type:" is written
};

}  // namespace AIRSYNC_STACK

#endif
