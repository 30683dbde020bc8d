// The transport of airsync: HTTP/1.1 over TCP, plain or through TLS.
//
// Threads. Every call comes from one thread at a time; Cancel alone may come from any thread, and from a
// signal handler, at any time between construction and destruction.
//
// Connections. Open connects at once, so that a server that can't be reached or trusted is told by Connect
// and not in the middle of a command. The connection is kept over many commands. Before each of them the
// transport looks whether it still stands (the end may have arrived meanwhile, also as TLS's close_notify),
// and whether the rest of the last response can be read away quickly; otherwise it makes a new one. After
// any failure the connection is dropped, and the next command makes a new one: the caller need not Close and
// Open.
//
// Sending. A document goes out in one piece when its last byte has been written, a message in pieces of at
// most 64 KiB, from where it lies; TransportOptions::watchRaw is told of them. SendHeader itself sends
// nothing and never blocks: a request without a body goes out with ReadResponseHead (or EndRequest).
//
// Sending again. A connection that had carried responses before may break before the first byte of this
// response: the server has closed it at the very moment. Then the request goes out a second time, on a new
// connection, where that can do no harm: when no byte of it has left this machine, or when it changes nothing
// on the server (RepeatRule.h). Nothing is sent again after a time-out, or on a connection that was new. When
// a request failed, `fate` tells whether the server may have got it.
//
// Success. Status 200 is, and for a message 201, 202 and 204. Everything else is not, and reports its status.
// Redirects are not followed. An answer that comes before the server has all of the request is no success,
// whatever its status. A document's body is read to the end of its framing before its first byte is handed
// out, and that of an answer whose body nobody reads together with its head: a body that breaks off, or
// whose framing contradicts itself, is a failure, however much of it the reader would have needed.
//
// Cancel ends the call under way, or, when none is, the next one that touches the network. It is forgotten
// when a call has reported it, at SendHeader, where a new command begins, and at Close: the command after a
// cancelled one works. Since SendHeader does not block and the library looks at its own flag before each
// Write and ReadResponseHead, no Cancel that belongs to a command is lost.
#ifndef AIRSYNC_TRANSPORT_HTTP_TRANSPORT_H
#define AIRSYNC_TRANSPORT_HTTP_TRANSPORT_H

#include <boost/asio/io_context.hpp>
#include <boost/asio/ssl/context.hpp>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "http/Transport.h"
#include "transport/CancelSignal.h"
#include "transport/Connection.h"
#include "transport/OutgoingRequest.h"
#include "transport/ResponseStream.h"
#include "transport/TransportError.h"
#include "transport/TransportOptions.h"

namespace airsync {

/// What became of a request, as far as this side can know.
enum class RequestFate : std::uint8_t {
  kNotSent,   // no byte of it has left: it can be sent as if it had never been tried
  kUnknown,   // the server may have got it, or part of it, and has not answered properly
  kAnswered,  // the server had all of it, and answered: with a document, or with a status
};

class HttpTransport final : public AIRSYNC_STACK::AirSyncTransportInterface {
 public:
  using SYNC_RESULT = AIRSYNC_STACK::SYNC_RESULT;

  explicit HttpTransport(TransportOptions options);
  ~HttpTransport();
  HttpTransport(const HttpTransport&) = delete;
  HttpTransport& operator=(const HttpTransport&) = delete;

  // Every operation returns 0 or resultOf(lastError().kind). None lets an exception out.

  /// Connects to the server of the options; of `server` nothing is read.
  SYNC_RESULT Open(const AIRSYNC_STACK::SERVER_INFO* server) override;
  SYNC_RESULT SendHeader(const char* head, INT32 length, UINT32 contentLength) override;
  /// Fails when body bytes are missing.
  SYNC_RESULT EndRequest() override;
  /// Fails when the bytes are more than were announced.
  SYNC_RESULT Write(const UINT8* bytes, INT32 count, INT32 raw) override;
  /// `*status` is 0 when no head arrived. `first` and `second` get the values of "MS-ASProtocolVersions" and
  /// "MS-ASProtocolCommands", cut to their room and terminated. With `raw`, a body that is announced to be
  /// longer than `*length` fails with kTooLarge.
  SYNC_RESULT ReadResponseHead(UINT16* status, UINT8** destination, UINT32* length, bool raw, UINT8* first,
                               INT32 firstLength, UINT8* second, INT32 secondLength) override;
  /// A read past the end of the body, as its framing tells it, yields what there is and fails. With `raw` it
  /// is the whole body that is read: a shorter one is none the worse, what fails is one that breaks off
  /// (kClosedEarly) and one that goes on behind the room for it (kTooLarge).
  SYNC_RESULT Read(UINT8* destination, INT32* count, INT32 raw) override;
  SYNC_RESULT Close() override;
  SYNC_RESULT Reserved7() override { return AIRSYNC_STACK::AS_RESULT_OK; }
  SYNC_RESULT Reserved8() override { return AIRSYNC_STACK::AS_RESULT_OK; }
  SYNC_RESULT Cancel() override;

  /// The failure of the current or last command; kNone after SendHeader and Open until something fails.
  /// Valid until the next call of either.
  const TransportError& lastError() const { return lastError_; }

  /// Whether the last response was a 200 with a proper body of 0 bytes: a server that has nothing to say. A
  /// chunked body shows it once a Read has met its end.
  bool lastResponseWasEmpty() const;

  /// How many bytes of the last response's body have been read, once a raw Read has succeeded.
  std::uint64_t lastBodyBytes() const { return response_.bodyBytes(); }

  /// What the head of the last response told of the length of its body, where it did.
  std::optional<std::uint64_t> lastBodyLength() const { return bodyLength_; }

  /// Of the last request.
  RequestFate fate() const;

 private:
  enum class Phase {
    kIdle,      // no request, or its failure has been told
    kSending,   // SendHeader was called; the response head has not been read
    kResponse,  // the response's head has been read
  };

  template <class Operation>
  SYNC_RESULT guarded(Operation operation) noexcept;
  SYNC_RESULT record(const TransportError& error) noexcept;

  void requirePhase(Phase phase, const char* operation) const;
  void startRequest(const char* head, INT32 length, UINT32 contentLength);
  void write(std::span<const UINT8> bytes, bool raw);
  void finishSending();
  ResponseHead readHead(std::optional<std::uint64_t> roomForBody);
  SYNC_RESULT readSlowly(UINT8* destination, INT32* count);
  SYNC_RESULT readWhole(UINT8* destination, INT32* count);

  void connect();
  void drop() noexcept;
  void prepareConnection();
  bool canBeReused();
  void armExchange();

  bool takeEarlyAnswer();
  void sendStaged();
  void send(std::span<const UINT8> bytes);
  void sendPieces(std::span<const UINT8> bytes, std::uint64_t before, bool raw);
  void readPieces(std::span<UINT8> destination, std::size_t& got);
  void tellRaw(std::uint64_t done, std::uint64_t next, std::uint64_t total) const;
  void writeNow(std::span<const UINT8> bytes);
  void resend();
  bool serverTookAll();
  bool mayResend(const TransportFailure& failure) const;
  bool mayExpectTls(TransportErrorKind kind) const;

  void trace(const std::string& event) const;

  TransportOptions options_;
  std::string peer_;  // "HOST port N", for messages
  CancelSignal cancel_;
  boost::asio::io_context context_;  // of the sockets; nothing ever runs in it
  std::unique_ptr<boost::asio::ssl::context> tls_;
  std::unique_ptr<Connection> connection_;
  ResponseStream response_;
  OutgoingRequest request_;

  bool open_ = false;
  Phase phase_ = Phase::kIdle;
  bool prepared_ = false;            // the connection is ready for this request, or has seen part of it
  bool reused_ = false;              // and had carried a response before
  bool carried_ = false;             // the connection has carried a response
  bool keepAlive_ = false;           // and the server lets it stand
  bool earlyAnswer_ = false;         // the server answered before it had the whole request, and hung up
  bool touched_ = false;             // some of the request has left this machine
  bool answered_ = false;            // and was answered properly
  std::uint64_t writtenBefore_ = 0;  // by the connection, when the request began
  std::optional<std::uint64_t> bodyLength_;
  bool spoke_ = false;  // what answers speaks HTTP: it has answered since Open
  UINT16 status_ = 0;
  Clock::time_point exchangeEnd_{};
  TransportError lastError_;
};

}  // namespace airsync

#endif
