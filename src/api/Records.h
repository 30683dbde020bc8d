// Core records: what crosses the border between the host and the library besides items.
//
// All of them are fixed-size records of inline text and 32-bit integers. None owns memory, so they may be
// copied byte for byte. Texts are 8-bit (UTF-8 where the server may show them to people) and end at their
// first NUL; a text that fills its whole field needs no terminator: the library never reads past the field.
// Capacities below count the terminator.
#ifndef KROAIRSYNC_API_RECORDS_H
#define KROAIRSYNC_API_RECORDS_H

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
  char host[256];      // server host name, written after "Host:"
  char user[256];      // account user name: query and credentials
  char password[256];  // account password: credentials only
  char deviceType[33];
  char deviceId[65];
  char domain[256];    // the credentials are domain, "/" and user
  char path[256];      // request path, written between the method and "?"
  char userAgent[70];  // empty: "Tarn-TestClient/0.1" is sent
};

// One folder of the hierarchy.
struct BASE_FOLDER {
  char displayName[64];
  INT32 type;  // folder type number as the protocol defines it
  FOLDER_ID serverId;
  FOLDER_ID parentId;  // "0" for a folder at the root
};

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
  INT32 handle;         // the host's own, passed first to every storage call about this folder
  INT32 syncMode;       // 2: the client's own commands are left out, and deletes are not asked to be moves;
                        // 1: the server's changes are not asked for
  _SYNC_KEY syncKey;    // the collection's current key
  INT32 truncation;     // sent with the collection
  INT32 conflict;       // sent with the collection
  UINT8 notifyEnabled;  // the folder is named in a notification-enable request
  UINT8 notifyGuid;     // a sync request carries the notification GUID
  UINT8 selected;       // the folder takes part in synchronisation; otherwise Sync refuses it
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
static_assert(sizeof(void*) != 4 || sizeof(FOLDER_INFO) == 296 + 3 * sizeof(void*),
              "nothing stands between the fields");

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
