#include "http/Session.h"

#include <array>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/ssl/ssl_stream.hpp>
#include <chrono>
#include <memory>
#include <optional>

#include "http/Wire.h"

namespace demoserver {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using Error = boost::system::error_code;
using Parser = http::request_parser<http::string_body>;
using Plain = beast::tcp_stream;
using Tls = beast::ssl_stream<beast::tcp_stream>;

constexpr std::uint32_t kHeadLimit = 16 * 1024;
constexpr std::size_t kReadSize = 64 * 1024;
constexpr std::size_t kDrainLimit = 4 * kMaxMessage;
constexpr std::chrono::seconds kDrainTime(2);

// The reply to a request that could not be read; a status of 0 when there is nobody left to hear it.
HttpReply replyTo(const Error& error) {
  if (error == http::error::header_limit) return HttpReply::text(431, "the request's head is too long");
  if (error == http::error::body_limit) return HttpReply::text(413, "the request's body is too long");
  const bool gone = error == http::error::end_of_stream || error == http::error::partial_message;
  const bool malformed = error.category() == http::make_error_code(http::error::bad_method).category();
  if (malformed && !gone) return HttpReply::text(400, "this is no HTTP/1.1 request");
  return {0, "", "", {}};
}

std::string text(beast::string_view view) { return {view.data(), view.size()}; }

// All but the body, which may not have come yet.
bool convert(const Parser::value_type& message, HttpRequest& request) {
  request.method = text(message.method_string());
  request.authorization = text(message[http::field::authorization]);
  return parseTarget(text(message.target()), request);
}

// Lives through the handlers of its pending operation, and ends with the last of them.
template <typename Stream>
class Session : public std::enable_shared_from_this<Session<Stream>> {
 public:
  template <typename... Arguments>
  Session(Service& service, const ListenerOptions& options, Load& load, Arguments&&... stream)
      : stream_(std::forward<Arguments>(stream)...),
        timer_(stream_.get_executor()),
        service_(service),
        options_(options),
        load_(load),
        share_(load) {
    buffer_.reserve(kReadSize);
  }

  void start() {
    if constexpr (std::is_same_v<Stream, Tls>) {
      startClock();
      stream_.async_handshake(asio::ssl::stream_base::server,
                              [self = this->shared_from_this()](const Error& error) {
                                if (!error) self->read();
                              });
    } else {
      read();
    }
  }

 private:
  void startClock() { socket().expires_after(std::chrono::seconds(options_.idleSeconds)); }

  Plain& socket() { return beast::get_lowest_layer(stream_); }

  void read() {
    letGo();
    parser_.emplace();
    parser_->header_limit(kHeadLimit);
    parser_->body_limit(kMaxMessage);
    startClock();
    http::async_read_header(stream_, buffer_, *parser_,
                            [self = this->shared_from_this()](const Error& error, std::size_t) {
                              if (error)
                                self->refuse(replyTo(error));
                              else
                                self->readBody();
                            });
  }

  // What the body may be is known once the head is there.
  void readBody() {
    request_ = {};
    if (!convert(parser_->get(), request_))
      return refuse(HttpReply::text(400, "the request's target is malformed"));
    const std::size_t limit = service_.bodyLimit(request_);
    if (parser_->content_length().value_or(0) > limit)
      return refuse(replyTo(http::make_error_code(http::error::body_limit)));
    parser_->body_limit(limit);
    parser_->eager(true);
    readMore();
  }

  // Piece by piece, so that what has come is counted before more is taken.
  void readMore() {
    share_.hold(parser_->get().body().size());
    if (load_.isFull())
      return refuse(HttpReply::text(503, "the server holds as much as it may; try again later"));
    if (parser_->is_done()) return handle();
    http::async_read_some(stream_, buffer_, *parser_,
                          [self = this->shared_from_this()](const Error& error, std::size_t) {
                            if (error)
                              self->refuse(replyTo(error));
                            else
                              self->readMore();
                          });
  }

  void refuse(const HttpReply& reply) {
    goOn_ = false;
    letGo();
    if (reply.status != 0)
      send(wireHead(reply, {.keepAlive = false}) + reply.body);
    else
      finish();
  }

  void handle() {
    goOn_ = parser_->get().keep_alive();
    request_.body = std::move(parser_->get().body());
    answer_ = service_.answer(request_);
    request_ = {};
    share_.hold(answer_.reply.body.size());
    if (answer_.close) goOn_ = false;
    if (answer_.fault.dropRequest) return finish();
    if (answer_.fault.delayMs <= 0) return deliver();
    socket().expires_never();
    timer_.expires_after(std::chrono::milliseconds(answer_.fault.delayMs));
    timer_.async_wait([self = this->shared_from_this()](const Error&) { self->deliver(); });
  }

  void deliver() {
    const Fault& fault = answer_.fault;
    if (fault.dropAnswer) return finish();
    const Framing framing{.keepAlive = goOn_, .chunked = options_.chunkSize != 0};
    const std::string head = wireHead(answer_.reply, framing);
    std::string body = std::move(answer_.reply.body);
    if (framing.chunked) body = chunked(body, options_.chunkSize);
    if (fault.cutBody && *fault.cutBody < body.size()) {
      body.resize(*fault.cutBody);
      goOn_ = false;
    }
    if (fault.closeAfter) goOn_ = false;
    send(head + body);
  }

  void send(std::string bytes) {
    out_ = std::move(bytes);
    share_.hold(out_.size());
    startClock();
    asio::async_write(stream_, asio::buffer(out_),
                      [self = this->shared_from_this()](const Error& error, std::size_t) {
                        if (!error && self->goOn_)
                          self->read();
                        else
                          self->finish();
                      });
  }

  // Frees what the last request and its answer took. No operation may be under way.
  void letGo() {
    parser_.reset();
    request_ = {};
    out_ = {};
    share_.hold(0);
  }

  // Lets the peer read what it was sent before the connection is gone: a socket that is closed with unread
  // input would be reset.
  void finish() {
    letGo();
    socket().expires_after(kDrainTime);
    if constexpr (std::is_same_v<Stream, Tls>)
      stream_.async_shutdown([self = this->shared_from_this()](const Error&) { self->hangUp(); });
    else
      hangUp();
  }

  void hangUp() {
    Error ignored;
    socket().socket().shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
    drain();
  }

  void drain() {
    socket().async_read_some(asio::buffer(rest_),
                             [self = this->shared_from_this()](const Error& error, std::size_t count) {
                               self->drained_ += count;
                               if (!error && self->drained_ < kDrainLimit) self->drain();
                             });
  }

  Stream stream_;
  asio::steady_timer timer_;
  Service& service_;
  const ListenerOptions& options_;
  Load& load_;
  LoadShare share_;
  beast::flat_buffer buffer_;
  std::optional<Parser> parser_;
  HttpRequest request_;
  Answer answer_;
  bool goOn_ = false;  // the connection stays open after the current answer
  std::string out_;
  std::array<char, 4096> rest_{};
  std::size_t drained_ = 0;
};

}  // namespace

void serve(asio::ip::tcp::socket socket, asio::ssl::context* tls, Service& service,
           const ListenerOptions& options, Load& load) {
  Error ignored;
  socket.set_option(asio::ip::tcp::no_delay(true), ignored);
  if (tls == nullptr)
    std::make_shared<Session<Plain>>(service, options, load, std::move(socket))->start();
  else
    std::make_shared<Session<Tls>>(service, options, load, std::move(socket), *tls)->start();
}

}  // namespace demoserver
