#include "http/Wire.h"

#include <array>
#include <cstdio>

namespace demoserver {
namespace {

struct Reason {
  int status;
  const char* phrase;
};

constexpr std::array<Reason, 13> kReasons = {{
    {200, "OK"},
    {201, "Created"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {409, "Conflict"},
    {413, "Payload Too Large"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
    {503, "Service Unavailable"},
}};

std::string phrase(int status) {
  for (const Reason& reason : kReasons)
    if (reason.status == status) return reason.phrase;
  return "Status";
}

}  // namespace

std::string wireHead(const HttpReply& reply, const Framing& framing) {
  std::string head = "HTTP/1.1 " + std::to_string(reply.status) + " " + phrase(reply.status) + "\r\n";
  const auto line = [&head](std::string_view name, std::string_view value) {
    head.append(name).append(": ").append(value).append("\r\n");
  };
  line("Server", "airsync-demo-server");
  for (const auto& [name, value] : reply.headers) line(name, value);
  if (!reply.contentType.empty() && !reply.body.empty()) line("Content-Type", reply.contentType);
  if (framing.chunked)
    line("Transfer-Encoding", "chunked");
  else
    line("Content-Length", std::to_string(reply.body.size()));
  line("Connection", framing.keepAlive ? "keep-alive" : "close");
  return head + "\r\n";
}

std::string chunked(std::string_view body, std::size_t size) {
  std::string out;
  for (std::string_view rest = body; !rest.empty(); rest.remove_prefix(std::min(size, rest.size()))) {
    const std::string_view piece = rest.substr(0, size);
    std::array<char, 20> length{};
    static_cast<void>(std::snprintf(length.data(), length.size(), "%zx\r\n", piece.size()));
    out.append(length.data()).append(piece).append("\r\n");
  }
  return out + "0\r\n\r\n";
}

}  // namespace demoserver
