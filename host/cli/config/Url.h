// The address of a server, taken apart.
#ifndef AIRSYNC_CLI_CONFIG_URL_H
#define AIRSYNC_CLI_CONFIG_URL_H

#include <cstdint>
#include <string>
#include <string_view>

namespace airsync {

struct Url {
  bool tls = true;
  std::string host;  // without the brackets of an IPv6 address
  std::uint16_t port = 443;
  std::string path = "/";

  /// "host", or "host:port" where the port is not the scheme's own; brackets around an IPv6 address.
  std::string authority() const;

  /// Whether it names this machine: by an address, or as localhost, which has yet to resolve to one.
  bool isLoopback() const;
};

/// Reads "http://host[:port][/path]" or the same with https. Anything that the requests have no room for
/// is refused: user names, queries, fragments, spaces and control characters.
/// Throws std::invalid_argument with the reason, which never repeats the text: it might hold a password.
Url parseUrl(std::string_view text);

}  // namespace airsync

#endif
