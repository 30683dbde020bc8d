// The host's transport: what moves bytes between the library and one server.
#ifndef KROAIRSYNC_HTTP_TRANSPORT_H
#define KROAIRSYNC_HTTP_TRANSPORT_H

#include "api/Records.h"

namespace AIRSYNC_STACK {

/// Moves bytes between the library and one server.
///
/// The host implements it, owns it, and keeps it alive from AirSync::Initialize to AirSync::Uninitialize, and
/// until calls of AirSync::CancelSync that began before that have returned; the library never deletes it.
/// Every call comes from inside an AirSync operation, on that operation's thread, and may block; Cancel alone
/// may come from elsewhere, at any time. An implementation calls no AirSync operation but CancelSync. A
/// result of 0 is success; any other ends the running command as told at each operation. The order of the
/// operations is fixed.
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
  /// Fills `*status` with the HTTP status in either case; where no head came, 0 stays in it. `*destination`,
  /// `*length` and `raw` announce where the body is going to be read to (null, 0 and false for a document).
  /// For AirSync::GetOptions `first` and `second` are given: the transport fills them, at most `firstLength`
  /// and `secondLength` bytes, from the head: the versions of the protocol that the server speaks (the value
  /// of "MS-ASProtocolVersions") and its commands ("MS-ASProtocolCommands").
  /// Non-zero: the command ends with the code that stands for `*status` (AS_RESULT_HTTP_UNAUTHORIZED and so
  /// on, or AS_RESULT_FAMILY_HTTP | status). Zero: the body is read, whatever the status is.
  virtual SYNC_RESULT ReadResponseHead(UINT16* status, UINT8** destination, UINT32* length, bool raw,
                                       UINT8* first, INT32 firstLength, UINT8* second,
                                       INT32 secondLength) = 0;

  /// Reads `*count` bytes of the body into `destination` and leaves in `*count` how many came.
  /// Non-zero: AS_RESULT_TRANSPORT_FAILED.
  ///
  /// A short delivery, fewer bytes and 0, means on either path that the body has ended. `raw` is 0 for a
  /// document, and for an attachment that was asked for so; documents are asked for in single bytes most of
  /// the time. Short there is AS_RESULT_TRANSPORT_FAILED: a body that ends so is not whole. `raw` is 1 for an
  /// attachment, which is asked for at once and may be shorter than its announced size: the command succeeds,
  /// and the library tells nobody how many bytes came. A transport that must know keeps the number.
  virtual SYNC_RESULT Read(UINT8* destination, INT32* count, INT32 raw) = 0;

  /// Closes the connection. The result is ignored.
  virtual SYNC_RESULT Close() = 0;

  /// Never called: they keep Cancel at its place.
  virtual SYNC_RESULT Reserved7() = 0;
  virtual SYNC_RESULT Reserved8() = 0;

  /// Ends a call that is blocked, as soon as possible. It comes by way of AirSync::CancelSync, and so from
  /// any thread, callback or signal handler from which the host calls that: also while no call is under way,
  /// also twice, also while Open or Close runs, and, when it was called before, after Close. It must not
  /// block. The result is ignored.
  ///
  /// The call that ends so may say either of two things. What it says decides the command's code:
  ///
  ///   0, and nothing or less than was wanted (ReadResponseHead: no status)   AS_RESULT_CANCELLED
  ///   another value: ReadResponseHead, without a status                      AS_RESULT_CANCELLED
  ///   another value: ReadResponseHead, with a status                         the code of the status
  ///   another value: Open                                                    that value
  ///   another value: SendHeader, Write, Read                                 AS_RESULT_TRANSPORT_FAILED
  ///
  /// A call that succeeds all the same is no matter: the next step of the command sees the cancel.
  virtual SYNC_RESULT Cancel() = 0;

 protected:
  ~AirSyncTransportInterface() = default;
};

}  // namespace AIRSYNC_STACK

#endif
