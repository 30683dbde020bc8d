// The library's part in the tests of the transport: requests and reads in the order in which it makes them.
#ifndef AIRSYNC_TESTS_TRANSPORT_CLIENT_H
#define AIRSYNC_TESTS_TRANSPORT_CLIENT_H

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "transport/HttpTransport.h"

namespace airsync::testing {

using AIRSYNC_STACK::SYNC_RESULT;

inline TransportOptions plainOptions(std::uint16_t port) {
  TransportOptions options;
  options.scheme = Scheme::kHttp;
  options.host = "127.0.0.1";
  options.port = port;
  return options;
}

/// A head as the library builds it, shortened to what the transport and the server look at. The command is
/// one that changes nothing on the server.
inline std::string requestHead(std::size_t contentLength, const std::string& moreLines = {}) {
  return "POST /sync?Cmd=FolderSync HTTP/1.1\r\nAuthorization: Basic c2VjcmV0\r\n" + moreLines +
         "Content-Length: " + std::to_string(contentLength) + "\r\n\r\n";
}

/// What the server must see of post(body).
inline std::string requestOf(const std::string& body) { return requestHead(body.size()) + body; }

inline std::string answerOf(const std::string& body) {
  return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

inline SYNC_RESULT sendHead(HttpTransport& transport, const std::string& head, std::size_t contentLength) {
  return transport.SendHeader(head.c_str(), static_cast<INT32>(head.size() + 1),
                              static_cast<UINT32>(contentLength));
}

inline SYNC_RESULT write(HttpTransport& transport, std::string_view bytes, INT32 raw = 0) {
  return transport.Write(reinterpret_cast<const UINT8*>(bytes.data()), static_cast<INT32>(bytes.size()), raw);
}

/// A document, byte by byte as the codec writes it.
inline SYNC_RESULT post(HttpTransport& transport, const std::string& body) {
  SYNC_RESULT result = sendHead(transport, requestHead(body.size()), body.size());
  for (const char& byte : body) {
    if (result == 0) result = write(transport, std::string_view(&byte, 1));
  }
  return result;
}

/// A message, in one piece.
inline SYNC_RESULT postMessage(HttpTransport& transport, const std::string& message) {
  const SYNC_RESULT result = sendHead(transport, requestHead(message.size()), message.size());
  return result == 0 ? write(transport, message, 1) : result;
}

struct HeadResult {
  SYNC_RESULT result;
  UINT16 status;
};

inline HeadResult readHead(HttpTransport& transport) {
  HeadResult head{0, 9999};
  UINT8* destination = nullptr;
  UINT32 length = 0;
  head.result =
      transport.ReadResponseHead(&head.status, &destination, &length, false, nullptr, 0, nullptr, 0);
  return head;
}

/// Up to `count` body bytes, one by one; stops at the first failure.
inline std::string readBody(HttpTransport& transport, std::size_t count) {
  std::string body;
  while (body.size() < count) {
    UINT8 byte = 0;
    INT32 wanted = 1;
    if (transport.Read(&byte, &wanted, 0) != 0) break;
    body.push_back(static_cast<char>(byte));
  }
  return body;
}

/// A whole exchange: the body's first `count` bytes, or what failed.
inline std::string exchange(HttpTransport& transport, const std::string& request, std::size_t count) {
  if (post(transport, request) != 0) return "not sent: " + transport.lastError().sentence();
  if (readHead(transport).result != 0) return "no head: " + transport.lastError().sentence();
  return readBody(transport, count);
}

}  // namespace airsync::testing

#endif
