// The library's manual: the one object through which a host application drives it.
//
// # A session
//
//   AirSync* airSync = AirSync::getInstance();
//   airSync->Initialize(server, deviceId, &transport, &storage, ENCODING_WBXML, nullptr);
//   airSync->Connect();                       // opens the transport
//   _SYNC_KEY hierarchyKey = {"0"};
//   airSync->FolderSync(hierarchyKey);        // storage learns of folders by UpdateFolder
//   airSync->Sync(folder.syncKey, &folder);   // storage learns of items and of the folder's new key
//   airSync->Disconnect();
//   airSync->Uninitialize();
//   AirSync::destroyInstance();
//
// Connect and Disconnect may be repeated within one Initialize.
//
// # What the host brings
//
// A transport (http/Transport.h), a storage (api/AirSyncDBInterface.h), the porting functions
// (support/Porting.h) and, if it likes, a log (support/Log.h). The library owns none of them; they live from
// Initialize to Uninitialize.
//
// # Results
//
// Each operation returns a SYNC_RESULT: AS_RESULT_OK, or a code of api/ResultCodes.h. Any command may end
// with the codes of its exchange, which are not repeated below:
//
//   AS_RESULT_INVALID_ARGUMENT    there is no connection; the request head would hold control characters or
//                                 more than 8 KiB
//   AS_RESULT_TRANSPORT_FAILED    the transport failed, or the response ended too early
//   AS_RESULT_HTTP_UNAUTHORIZED, AS_RESULT_HTTP_BAD_REQUEST, AS_RESULT_HTTP_SERVER_ERROR,
//   AS_RESULT_FAMILY_HTTP | status
//                                 the transport refused the response's head
//   AS_RESULT_MALFORMED_DOCUMENT  the response breaks the encoding's rules, is not the command's, or holds an
//                                 element that has no place there; with ENCODING_XML, any response
//   AS_RESULT_OUT_OF_MEMORY       SmlMalloc had nothing left
//   AS_RESULT_CANCELLED           CancelSync was called
//
// A failed command leaves the object usable: all memory of the exchange is released, what storage was told
// before stays told. The connection may be in the middle of a request: the host decides whether to Disconnect
// and Connect again.
//
// # Hostile servers
//
// Two things that a server can send end the process, by assertions that are active in every build:
//
//   "pSmlElement->NumberOfAttributes < 1"   an element with a second attribute
//   "__null == &In"                         an extension token as an attribute's value
//
// A host that must survive them runs the library in a process of its own. Everything else that is wrong with
// a response is a result.
//
// # Memory
//
// Arrays that an operation hands out (GetHierarchy, carrier lists) stay valid until the next operation that
// fails or until Initialize or Uninitialize, whichever comes first; AdapterFree (support/AdapterFree.h)
// releases them earlier.
//
// # Threads
//
// There are none inside. All operations are called from one thread at a time; only getInstance and CancelSync
// may be called from any thread, from a callback or from a signal handler, at any time: while a command runs,
// also while Connect, Disconnect, Initialize, Uninitialize or destroyInstance does, and after these. Of the
// library they touch only what lives as long as the process, and they take no lock. The transport is the
// host's: Cancel may still be running on another thread when Disconnect or Uninitialize returns, so a host
// destroys its transport when the calls of CancelSync that began before Uninitialize have returned.
//
// Commands do not nest: called from a callback of the transport or of the storage, each operation but
// getInstance, CancelSync and NotifyRecv does nothing, and returns AS_RESULT_INVALID_ARGUMENT if it returns
// anything.
#ifndef KROAIRSYNC_API_AIRSYNC_H
#define KROAIRSYNC_API_AIRSYNC_H

#include <atomic>

#include "api/AirSyncDBInterface.h"
#include "api/Records.h"
#include "http/Transport.h"
#include "support/AdapterFree.h"
#include "support/Log.h"

namespace AIRSYNC_STACK {

class Communications;
class Generator;
class Parser;
enum class RequestLimit;
struct sml_element;

class AIRSYNC_API AirSync {
 public:
  /// The one object. It stands in static storage, so that nobody who still has its address can touch what is
  /// gone.
  static AirSync* getInstance();

  /// Makes the object as it was before its first use. It neither disconnects nor uninitialises: do that
  /// before.
  static void destroyInstance();

  /// Takes the account and the host's objects. `server` is copied; `deviceId` is only logged (requests take
  /// the identifier from `server`); `log` may be null. Documents are written and read in `encoding`.
  ///
  /// Called again, it begins anew as if Uninitialize had been called before: all memory that was handed out
  /// is released. A connection that is still there is forgotten (without Close), since it is the old
  /// account's: commands need a new Connect.
  ///
  /// AS_RESULT_INVALID_ARGUMENT: `transport` or `storage` is null; `server` and `encoding` are taken all the
  /// same. AS_RESULT_OUT_OF_MEMORY: no room for the library's own objects.
  SYNC_RESULT Initialize(const SERVER_INFO& server, const char* deviceId,
                         AirSyncTransportInterface* transport, AirSyncDBInterface* storage,
                         ENCODINGTYPE encoding, Log* log);

  /// Opens the transport. A connection that is still there is replaced (without Close).
  ///
  /// Whatever the transport's Open returned, when it is not 0. AS_RESULT_INVALID_ARGUMENT: before Initialize.
  /// AS_RESULT_CANCELLED.
  SYNC_RESULT Connect();

  /// Closes the transport and ends the connection, each Connect's once.
  /// AS_RESULT_INVALID_ARGUMENT: there is no connection.
  SYNC_RESULT Disconnect();

  /// Forgets the account and releases all memory. Always AS_RESULT_OK. Disconnect first: a connection is
  /// left alone.
  SYNC_RESULT Uninitialize();

  /// Asks the running command to end with AS_RESULT_CANCELLED at its next step, and the transport, while
  /// there is a connection, to end a call that blocks (see its Cancel for the code that the command then ends
  /// with). Without a running command, or when the running one has no step left, the next one ends so.
  /// Returns at once. It may be called at any time, from any thread (see Threads above).
  void CancelSync();

  /// Whether CancelSync was called and no operation has ended by it yet.
  bool CancelRequested() const { return cancelFlag_.load(std::memory_order_relaxed) != 0; }

  /// Synchronises one folder: sends the local changes that storage delivers and stores the server's, in as
  /// many exchanges as either side needs. `key` is the value that a request carries for a folder whose
  /// notifyGuid flag is set; the folder's own key is `folder->syncKey`, which storage renews (StoreSyncKey)
  /// before the next exchange.
  ///
  /// With the folder's key "0" it begins anew. That exchange sends nothing and brings no items, only a key:
  /// Sync returns AS_RESULT_OK after it, and is to be called again for the items.
  ///
  /// A local change that storage has delivered and that no request took yet leads the next Sync of the same
  /// folder. It is forgotten when an operation fails, when another folder is synchronised, and when the
  /// folder begins anew.
  ///
  /// There is no limit on the number of exchanges: a host that suspects a server of repeating itself calls
  /// CancelSync from a callback.
  ///
  /// AS_RESULT_INVALID_ARGUMENT: `folder` is null. AS_RESULT_FOLDER_NOT_SELECTED.
  /// AS_RESULT_REQUEST_TOO_LARGE: a local change is too large for any request (it is the one that
  /// GetNextChange delivered last). AS_RESULT_NO_REQUEST. AS_RESULT_WRONG_COLLECTION: the response is about
  /// another folder or class. AS_RESULT_FAMILY_SYNC | status: the server refused.
  SYNC_RESULT Sync(const _SYNC_KEY& key, FOLDER_INFO* folder);

  /// Brings the folder hierarchy up to date: storage is told of deleted, added and changed folders. `key` is
  /// the hierarchy's key ("0": all folders come as added) and receives the new one.
  ///
  /// AS_RESULT_FAMILY_FOLDER | status: the server refused.
  SYNC_RESULT FolderSync(_SYNC_KEY& key);

  /// Fetches all folders at once, without a key. `folders` receives an array of `count` records (see Memory
  /// above), also when there are none.
  SYNC_RESULT GetHierarchy(BASE_FOLDER*& folders, int& count);

  /// Creates a folder on the server: `folder` gives its name, type and parent and receives its identifier;
  /// `key` is the hierarchy's key and receives the new one.
  ///
  /// AS_RESULT_FAMILY_FOLDER | status: the server refused. AS_RESULT_NO_REQUEST: `folder` is null.
  SYNC_RESULT FolderCreate(_SYNC_KEY& key, BASE_FOLDER* folder);

  /// Deletes a folder on the server. Results as for FolderCreate.
  SYNC_RESULT FolderDelete(const FOLDER_ID& id, _SYNC_KEY& key);

  /// Renames a folder on the server, or moves it below another: `folder` gives its identifier and what it is
  /// to be called and where. Results as for FolderCreate.
  SYNC_RESULT FolderUpdate(_SYNC_KEY& key, BASE_FOLDER* folder);

  /// Asks for one item in full: storage receives it by FetchedItem. `folder` must not be null.
  ///
  /// AS_RESULT_WRONG_COLLECTION: the response is about another folder or class. AS_RESULT_FAMILY_SYNC |
  /// status: the server refused; an item's own status goes to storage.
  SYNC_RESULT Fetch(FOLDER_INFO* folder, const SERVER_ID& id);

  /// Asks how many items wait on the server in each folder of storage's GetFolderList whose `selected` flag
  /// is set: storage is told by SetItemEstimate.
  ///
  /// AS_RESULT_REQUEST_TOO_LARGE: the request would be longer than 10,000 bytes. AS_RESULT_WRONG_COLLECTION:
  /// the response names a folder that is not in the list.
  SYNC_RESULT GetItemEstimate();

  /// Sends a message: `length` bytes of MIME text, at most 2^31 - 1, which stay as they are. With
  /// `saveInSent` the server keeps a copy. `raw` selects how the bytes reach the transport: as document
  /// bytes, or as bytes of a message (its Write's `raw`). The response's body is not read.
  ///
  /// AS_RESULT_INVALID_ARGUMENT: `message` is null with a length, or too long.
  SYNC_RESULT SendMail(const unsigned char* message, unsigned int length, bool saveInSent, bool raw);

  /// The same, as an answer to, or to forward, a message that is on the server: the server completes the
  /// message from its copy.
  SYNC_RESULT SmartReply(const unsigned char* message, unsigned int length, bool saveInSent, SERVER_ID item,
                         FOLDER_ID collection, bool raw);
  SYNC_RESULT SmartForward(const unsigned char* message, unsigned int length, bool saveInSent, SERVER_ID item,
                           FOLDER_ID collection, bool raw);

  /// Downloads an attachment into `buffer`, which has room for `length` bytes: the size that the mail item
  /// tells, for the library does not look at the response's. `name` is the attachment's handle
  /// (AS_ATTACHMENT_T::OID or Name, as the server wants it), at most 994 characters, and goes out as it is.
  ///
  /// What is shorter than `length`: with `raw` the transport is asked for all of it at once and may deliver
  /// less. The operation succeeds then, the rest of `buffer` stays as it was, and nothing here tells how many
  /// bytes came: the host's transport knows (its Read). Without `raw` it is AS_RESULT_TRANSPORT_FAILED. What
  /// is longer is left to the transport, which may refuse the response's head.
  ///
  /// AS_RESULT_INVALID_ARGUMENT: `name` is null or too long, `buffer` is null with a length, or `length` is
  /// above 2^31 - 1.
  SYNC_RESULT GetAttachment(const char* name, unsigned char* buffer, unsigned int length, bool raw);

  /// Moves `count` items; the arrays run in step. `results` receives each item's status (3 is success, 0: the
  /// server said nothing of it), `newIds` its new identifier where that is 3, and "0" elsewhere.
  ///
  /// AS_RESULT_REQUEST_TOO_LARGE: the request would be longer than 10,000 bytes; lengths count modulo 65,536,
  /// so that long lists must be split before.
  SYNC_RESULT MoveItems(const SERVER_ID* items, const FOLDER_ID* sources, const FOLDER_ID* destinations,
                        SERVER_ID* newIds, int* results, int count);

  /// Answers a meeting request, a mail in `collection`. `calendarId` receives the calendar item that the
  /// answer made; "0" where there is none.
  ///
  /// AS_RESULT_WRONG_COLLECTION: the response is about another request. AS_RESULT_FAMILY_MEETING | status:
  /// the server refused.
  SYNC_RESULT MeetingResponse(const SERVER_ID& request, const FOLDER_ID& collection,
                              AS_MEETING_RESPONSE_ENUM_T response, SERVER_ID& calendarId);

  /// Asks for the server's options: the transport fills the two buffers from the response's head, `first`
  /// with the versions of the protocol that the server speaks ("MS-ASProtocolVersions") and `second` with its
  /// commands ("MS-ASProtocolCommands").
  SYNC_RESULT GetOptions(unsigned char* first, int firstLength, unsigned char* second, int secondLength);

  /// Asks to be notified of changes, for `lifetime` seconds, in the folders of storage's GetFolderList whose
  /// `notifyEnabled` flag is set; a lifetime of 0 switches notification off. `list` receives `count` carrier
  /// profiles of 63 characters (see Memory above); null where the response has none. Storage is told of each
  /// folder by SetNotifyFolderStatus.
  ///
  /// AS_RESULT_REQUEST_TOO_LARGE: the request would be longer than 10,000 bytes. AS_RESULT_FAMILY_NOTIFY |
  /// status: the server refused. AS_RESULT_WRONG_COLLECTION: the response names a folder that is not in the
  /// list.
  SYNC_RESULT NotifyEnable(const unsigned char* carrier, const char* friendlyName, const char* deviceAddress,
                           unsigned int lifetime, unsigned char (*&list)[64], unsigned short& count);

  /// Asks for the carrier profiles that the server knows; `list` and `count` as above.
  /// AS_RESULT_FAMILY_NOTIFY | status: the server refused.
  SYNC_RESULT GetCarrierList(unsigned char (*&list)[64], unsigned short& count);

  /// Registers the device's address. Its request holds an element that WBXML has no token for: with
  /// ENCODING_WBXML it ends with AS_RESULT_MALFORMED_DOCUMENT before anything is sent.
  /// AS_RESULT_FAMILY_NOTIFY | status: the server refused.
  SYNC_RESULT SetDeviceAddress(const unsigned char* carrier, const char* friendlyName,
                               const char* deviceAddress);

  /// Checks whether a notification, `length` bytes of base64, is meant for the notification set-up that
  /// `guid` names, as "{01234567-89ab-cdef-0123-456789abcdef}". Sends nothing, and needs no connection.
  ///
  /// 0x80000000 (AS_RESULT_FOLDER_NOT_SELECTED): the payload is empty, can't be decoded, is too short, or is
  /// for another set-up.
  SYNC_RESULT NotifyRecv(const unsigned char* payload, int length, const _SYNC_KEY& guid);

#ifdef AIRSYNC_INTERNALS
  // For the library's own layers; hosts can neither call nor link them.

  /// Ends the running operation with `code`. Clears the cancel flag, releases all memory of the exchange and
  /// jumps to the operation's frame. It never returns; outside an operation it stops the process.
  [[noreturn]] AIRSYNC_LOCAL void AbortSync(unsigned int code);

  /// CancelRequested of the one object, without a call. Every byte asks.
  AIRSYNC_LOCAL static bool Cancelled() { return instance.CancelRequested(); }
#endif

 private:
  constexpr AirSync() = default;
  ~AirSync() = default;
  AirSync(const AirSync&) = delete;
  AirSync& operator=(const AirSync&) = delete;

  AIRSYNC_LOCAL Generator& RequestBuilder();
  AIRSYNC_LOCAL Communications& Connection();
  AIRSYNC_LOCAL sml_element* RunExchange(sml_element* request, const char* command, const char* root,
                                         RequestLimit limit);
  AIRSYNC_LOCAL SYNC_RESULT SmartCommand(const char* name, const unsigned char* message, unsigned int length,
                                         bool saveInSent, const SERVER_ID& item, const FOLDER_ID& collection,
                                         bool raw);
  AIRSYNC_LOCAL SYNC_RESULT SendMessage(const char* command, const unsigned char* message,
                                        unsigned int length, bool raw);
  AIRSYNC_LOCAL SYNC_RESULT CheckNotification(const unsigned char* payload, UINT32 length,
                                              const _SYNC_KEY& guid);
  AIRSYNC_LOCAL void LogEntry(const char* text) const;

  AIRSYNC_LOCAL static AirSync instance;

  // CancelSync touches this and cancelTarget_, and nothing else: loads and stores of a byte and a word, which
  // take no lock and no library anywhere.
  std::atomic<UINT8> cancelFlag_{0};
  ENCODINGTYPE encoding_ = ENCODING_XML;
  SERVER_INFO server_ = {};
  UINT8 reserved64_[64] = {};
  UINT8 reserved32_[32] = {};
  AirSyncTransportInterface* transport_ = nullptr;
  AirSyncDBInterface* storage_ = nullptr;
  Generator* generator_ = nullptr;
  Parser* parser_ = nullptr;
  _SYNC_KEY lastSyncKey_ = {};
  Communications* communications_ = nullptr;
  Log* log_ = nullptr;
  std::atomic<AirSyncTransportInterface*> cancelTarget_{nullptr};  // transport_, while there is a connection
};

}  // namespace AIRSYNC_STACK

#endif
