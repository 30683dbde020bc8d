// Communications: one protocol command as one HTTP request and its response, on the host's transport.
//
// It writes the request head, hands the body bytes to the transport as the document codec produces them, and
// delivers the bytes of the response. It knows nothing of sockets, TLS or proxies. No operation returns an
// error: each failure ends the exchange through AirSync::AbortSync. The cancel flag is tested before each
// step that may block.
#ifndef KROAIRSYNC_HTTP_COMMUNICATIONS_H
#define KROAIRSYNC_HTTP_COMMUNICATIONS_H

#include "api/AirSync.h"
#include "api/Records.h"
#include "http/Transport.h"
#include "support/Log.h"

namespace AIRSYNC_STACK {

class Communications {
 public:
  Communications(SERVER_INFO server, AirSyncTransportInterface* transport, Log* log);
  ~Communications();
  Communications(const Communications&) = delete;
  Communications& operator=(const Communications&) = delete;

  /// Opens the transport. A failure is raised as the transport returned it.
  SYNC_RESULT Start();

  /// Builds and sends a request's head. `cmd` is the command's name with any further query parameters, or
  /// null. Raises AS_RESULT_INVALID_ARGUMENT, with nothing sent, for a head that can't be written.
  SYNC_RESULT Prologue(UINT32 contentLength, const char* cmd, ENCODINGTYPE encoding, const char* method);

  /// Sends bytes of the body: of a document, or of a message as it stands.
  void Send(UINT8* bytes, int count);
  void SendFile(UINT8* bytes, int count);

  /// The sink of the measuring pass: counts, and sends nothing.
  void CountOutStream(UINT8* bytes, int count);
  void ResetOutCount() { outCount_ = 0; }
  INT32 OutCount() const { return outCount_; }

  /// Ends a request. No command needs it: a request ends with its body.
  void Epilogue();

  /// Closes the transport.
  void Stop();

  /// Tells the transport to end a call that blocks. AirSync::CancelSync does so without coming here: it may
  /// be called while this object is being destroyed.
  void CancelSync();

  /// Reads the response's head for a document.
  SYNC_RESULT ReadHTTPHeader();

  /// Reads the response's head. What is passed is the transport's to use; a head that it refuses is raised by
  /// its HTTP status.
  SYNC_RESULT BeforeRead(UINT8* destination, UINT32 length, bool flag, UINT8* first, INT32 firstLength,
                         UINT8* second, INT32 secondLength);

  /// The source of documents. A positive count reads exactly so many bytes; a negative one gives the last
  /// -count bytes back, so that they are read again.
  void Read(UINT8* destination, int count);

  /// The same for one byte. Nearly all of a document is read so: without the pointer to member in between,
  /// trees are decoded a tenth faster.
  UINT8 ReadByte();

  /// Reads bytes of an attachment, past the history: they can't be given back. It may end early.
  void ReadFile(UINT8* destination, int count);

  // The request head, in parts.

  /// Room for the longest head that is sent, 8 KiB, and its terminator.
  static const UINT32 kHeadCapacity = 8 * 1024 + 1;
  /// Room for "Basic ", the base64 form of full-length credentials (770 bytes), and a terminator.
  static const UINT32 kCredentialsCapacity = 6 + 1028 + 1;

  /// Writes the head into `buffer` (kHeadCapacity bytes). False when it would be longer, or would hold a
  /// control character that some text brought in.
  static bool BuildHttpHeader(char* buffer, UINT32 contentLength, const SERVER_INFO& server, const char* cmd,
                              ENCODINGTYPE encoding, const char* method);

  /// Appends one header line to the terminated text in `buffer` (kHeadCapacity bytes): name, " ", value, CR
  /// LF. False when it does not fit, or when the value holds a control character.
  static bool AddLine(char* buffer, const char* name, const char* value);

  /// The text of a content type; null for an encoding that has none.
  static const char* GetContentTypeString(ENCODINGTYPE encoding);

  /// Writes "Basic " and the base64 form of realm, ":" and password into `out` (kCredentialsCapacity bytes).
  /// False, with nothing written, for more than 770 characters in all.
  static bool basic_authentication_encode(const char* realm, const char* password, char* out);

  /// A second way to compose a realm, which no request uses: the server address's host name after its first
  /// ".", "/" and the user. `out` holds as many bytes as address and user have characters, and two more.
  /// AS_RESULT_BAD_SERVER_ADDRESS: the address has no "http://" or "https://", or no "." after it.
  static SYNC_RESULT RealmUsername(const char* serverAddress, const char* user, char* out);

  // The history: the last 69 bytes of the body, of which those behind the read position are handed out again.
  UINT16 BufferedBytesAvaliable() const;
  UINT16 ReadFromBuffer(UINT8* destination, unsigned int BytesRequested);
  void NotifyBufferOfRead(const UINT8* data, int count);

 private:
  static const int kHistory = 5 + 64;
  // The history slides through a larger area, so that a single byte read does not move the other 68.
  static const int kSlidingArea = 2048;

  static void CheckCancelled() {
    if (AirSync::Cancelled()) AirSync::getInstance()->AbortSync(AS_RESULT_CANCELLED);
  }
  void LogTrace(const char* text) const;
  void Write(const UINT8* bytes, int count, INT32 raw);
  void ReadFromTransport(UINT8* destination, INT32 count);
  // Not inlined: what is rare would take the registers of what is done for each byte.
  __attribute__((noinline)) void ReadSome(UINT8* destination, int count);
  [[noreturn]] __attribute__((noinline)) static void ReadFailed(SYNC_RESULT result);
  __attribute__((noinline)) void KeepByteAtEnd(UINT8 byte) { NotifyBufferOfRead(&byte, 1); }
  void KeepByte(UINT8 byte);
  void EmptyHistory();

  // The assertions on the history show these two names to whoever reads them.
  UINT8* g_ReadBuffer;
  UINT8* g_ReadBufferPosition;
  SERVER_INFO server_;
  INT32 outCount_ = 0;
  AirSyncTransportInterface* transport_;
  Log* log_;
  // One byte in front, so that a step back too far has a place to point to until it is caught.
  UINT8 area_[1 + kHistory + kSlidingArea] = {};
};

inline UINT8 Communications::ReadByte() {
  CheckCancelled();
  UINT8 byte = 0;
  if (g_ReadBufferPosition == g_ReadBuffer + kHistory) {
    ReadFromTransport(&byte, 1);
    KeepByte(byte);
  } else {
    ReadSome(&byte, 1);
  }
  return byte;
}

inline void Communications::ReadFromTransport(UINT8* destination, INT32 count) {
  INT32 delivered = count;
  const SYNC_RESULT result = transport_->Read(destination, &delivered, 0);
  // The decoders have no way to learn of a short read.
  if (result != AS_RESULT_OK || delivered != count) ReadFailed(result);
}

inline void Communications::KeepByte(UINT8 byte) {
  UINT8* end = g_ReadBuffer + kHistory;
  if (end == area_ + sizeof(area_)) return KeepByteAtEnd(byte);
  *end = byte;
  ++g_ReadBuffer;
  ++g_ReadBufferPosition;
}

}  // namespace AIRSYNC_STACK

#endif
