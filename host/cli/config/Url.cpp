#include "cli/config/Url.h"

#include <algorithm>
#include <arpa/inet.h>
#include <charconv>
#include <fmt/core.h>
#include <stdexcept>

namespace airsync {

namespace {

bool takePrefix(std::string_view& text, std::string_view prefix) {
  if (text.substr(0, prefix.size()) != prefix) return false;
  text.remove_prefix(prefix.size());
  return true;
}

std::uint16_t parsePort(std::string_view digits) {
  unsigned port = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
  if (error != std::errc() || end != digits.data() + digits.size() || port == 0 || port > 65535) {
    throw std::invalid_argument("the port must be a number from 1 to 65535");
  }
  return static_cast<std::uint16_t>(port);
}

bool isHostCharacter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '.' || character == '-' || character == '_';
}

// Takes the host off the front of `text`, and leaves ":port" or nothing.
std::string takeHost(std::string_view& text) {
  if (takePrefix(text, "[")) {
    const std::size_t end = text.find(']');
    std::string host(text.substr(0, end));
    in6_addr address;
    if (end == std::string_view::npos || inet_pton(AF_INET6, host.c_str(), &address) != 1) {
      throw std::invalid_argument("what stands between [ and ] is no IPv6 address");
    }
    text.remove_prefix(end + 1);
    return host;
  }
  std::string host(text.substr(0, text.find(':')));
  if (host.empty()) throw std::invalid_argument("there is no host name in it");
  if (!std::all_of(host.begin(), host.end(), isHostCharacter)) {
    throw std::invalid_argument(
        "a host name has only letters, digits, '.', '-' and '_' (write other letters in their xn-- form)");
  }
  text.remove_prefix(host.size());
  return host;
}

void refuseWhatHasNoRoom(std::string_view text) {
  const bool unprintable = std::any_of(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) <= 0x20 || c == 0x7f; });
  if (unprintable) throw std::invalid_argument("it must not contain spaces or control characters");
  if (text.find_first_of("?#") != std::string_view::npos) {
    throw std::invalid_argument("it must not contain '?' or '#': the query is written by airsync");
  }
}

}  // namespace

Url parseUrl(std::string_view text) {
  refuseWhatHasNoRoom(text);
  Url url;
  if (takePrefix(text, "http://")) {
    url.tls = false;
    url.port = 80;
  } else if (!takePrefix(text, "https://")) {
    throw std::invalid_argument("it must begin with https:// (or http://)");
  }
  const std::size_t slash = std::min(text.find('/'), text.size());
  std::string_view authority = text.substr(0, slash);
  if (slash < text.size()) url.path = text.substr(slash);
  if (authority.find('@') != std::string_view::npos) {
    throw std::invalid_argument("it must not contain a login: use `user` and `password_command`");
  }
  url.host = takeHost(authority);
  if (authority.empty()) return url;
  if (!takePrefix(authority, ":")) throw std::invalid_argument("only :port may follow the host");
  url.port = parsePort(authority);
  return url;
}

std::string Url::authority() const {
  const std::string name = host.find(':') == std::string::npos ? host : "[" + host + "]";
  const bool usual = port == (tls ? 443 : 80);
  return usual ? name : fmt::format("{}:{}", name, port);
}

bool Url::isLoopback() const {
  in_addr four;
  if (inet_pton(AF_INET, host.c_str(), &four) == 1) return (ntohl(four.s_addr) >> 24) == 127;
  in6_addr six;
  if (inet_pton(AF_INET6, host.c_str(), &six) == 1) return IN6_IS_ADDR_LOOPBACK(&six) != 0;
  return host == "localhost";
}

}  // namespace airsync
