// The host's transport: what moves bytes between the library and one server.
#ifndef KROAIRSYNC_HTTP_TRANSPORT_H
#define KROAIRSYNC_HTTP_TRANSPORT_H

#include "api/Records.h"

namespace AIRSYNC_STACK {

/// Moves bytes between the library and one server.
///
/// The host implements it, owns it, and keeps it alive from AirSync::Initialize to AirSync::Uninitialize; the
/// library never deletes it. Every call comes from inside an AirSync operation, on that operation's thread,
/// and may block; Cancel alone may come from elsewhere, while another call is under way. An implementation
/// calls no AirSync operation but CancelSync. A result of 0 is success; any other ends the running command
/// as told at each operation. The order of the operations is fixed.
class AirSyncTransportInterface {
 public:
  /// Opens the connection. `server` stays valid until Close.
  /// Non-zero: AirSync::Connect returns that very value (top bit set, by convention).
  virtual SYNC_RESULT Open(const SERVER_INFO* server) = 0;

  /// Sends the head of a request. `head` is the whole head, with its empty last line; `length` counts its
  /// terminating NUL, which does not belong on the wire; a body of `contentLength` bytes follows by Write.
  /// Non-zero: AS_RESULT_TRANSPORT_FAILED.
  virtual SYNC_RESULT SendHeader(const char* head, INT32 length, UINT32 contentLength) = 0;

  /// Ends a request. No command calls it: a request is complete when its body's bytes have gone out.
  /// Non-zero: AS_RESULT_TRANSPORT_FAILED.
  virtual SYNC_RESULT EndRequest() = 0;

  /// Sends `count` bytes of the body. `raw` is 0 for a document, 1 for bytes of a message.
  /// Non-zero: AS_RESULT_TRANSPORT_FAILED.
  virtual SYNC_RESULT Write(const UINT8* bytes, INT32 count, INT32 raw) = 0;

  /// Reads the head of the response and decides whether it is acceptable.
  ///
  /// Fills `*status` with the HTTP status in either case. `*destination`, `*length` and `raw` announce where
  /// the body is going to be read to (null, 0 and false for a document). Where `first` and `second` are
  /// given, the transport fills them, at most `firstLength` and `secondLength` bytes, from the head.
  /// Non-zero: the command ends with the code that stands for `*status` (AS_RESULT_HTTP_UNAUTHORIZED and so
  /// on, or AS_RESULT_FAMILY_HTTP | status). Zero: the body is read, whatever the status is.
  virtual SYNC_RESULT ReadResponseHead(UINT16* status, UINT8** destination, UINT32* length, bool raw,
                                       UINT8* first, INT32 firstLength, UINT8* second,
                                       INT32 secondLength) = 0;

  /// Reads `*count` bytes of the body into `destination` and leaves in `*count` how many came. `raw` is 0 for
  /// a document, of which the library asks for single bytes most of the time: fewer than wanted, or a
  /// non-zero result, is AS_RESULT_TRANSPORT_FAILED. `raw` is 1 for an attachment, which may end early.
  virtual SYNC_RESULT Read(UINT8* destination, INT32* count, INT32 raw) = 0;

  /// Closes the connection. The result is ignored.
  virtual SYNC_RESULT Close() = 0;

  /// Never called: they keep Cancel at its place.
  virtual SYNC_RESULT Reserved7() = 0;
  virtual SYNC_RESULT Reserved8() = 0;

  /// Ends a call that is blocked, as soon as possible. May come from any thread, and, by way of
  /// AirSync::CancelSync, from wherever the host calls that. The result is ignored.
  virtual SYNC_RESULT Cancel() = 0;

 protected:
  ~AirSyncTransportInterface() = default;
};

}  // namespace AIRSYNC_STACK

#endif
