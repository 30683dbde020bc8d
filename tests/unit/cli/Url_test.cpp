#include "cli/config/Url.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace airsync {
namespace {

struct GoodRow {
  const char* text;
  bool tls;
  const char* host;
  int port;
  const char* path;
  const char* authority;
  bool loopback;
};

const GoodRow kGood[] = {
    {"https://sync.example.com", true, "sync.example.com", 443, "/", "sync.example.com", false},
    {"https://sync.example.com/", true, "sync.example.com", 443, "/", "sync.example.com", false},
    {"https://sync.example.com:8443/a/b", true, "sync.example.com", 8443, "/a/b", "sync.example.com:8443",
     false},
    {"http://localhost:80/x", false, "localhost", 80, "/x", "localhost", true},
    {"http://127.0.0.1:4000", false, "127.0.0.1", 4000, "/", "127.0.0.1:4000", true},
    {"http://127.9.9.9", false, "127.9.9.9", 80, "/", "127.9.9.9", true},
    {"https://[::1]/x", true, "::1", 443, "/x", "[::1]", true},
    {"https://[2001:db8::1]:99", true, "2001:db8::1", 99, "/", "[2001:db8::1]:99", false},
    {"http://localhost.example.com", false, "localhost.example.com", 80, "/", "localhost.example.com", false},
    {"https://a.b/x@y", true, "a.b", 443, "/x@y", "a.b", false},
};

TEST(Url, IsTakenApart) {
  for (const GoodRow& row : kGood) {
    SCOPED_TRACE(row.text);
    const Url url = parseUrl(row.text);
    EXPECT_EQ(url.tls, row.tls);
    EXPECT_EQ(url.host, row.host);
    EXPECT_EQ(url.port, row.port);
    EXPECT_EQ(url.path, row.path);
    EXPECT_EQ(url.authority(), row.authority);
    EXPECT_EQ(url.isLoopback(), row.loopback);
  }
}

struct BadRow {
  const char* text;
  const char* reason;
};

const BadRow kBad[] = {
    {"", "it must begin with https:// (or http://)"},
    {"sync.example.com", "it must begin with https:// (or http://)"},
    {"HTTPS://a.b", "it must begin with https:// (or http://)"},
    {"https://", "there is no host name in it"},
    {"https:///x", "there is no host name in it"},
    {"https://:1", "there is no host name in it"},
    {"https://a.b:0", "the port must be a number from 1 to 65535"},
    {"https://a.b:65536", "the port must be a number from 1 to 65535"},
    {"https://a.b:", "the port must be a number from 1 to 65535"},
    {"https://a.b:8o", "the port must be a number from 1 to 65535"},
    {"https://a.b:-1", "the port must be a number from 1 to 65535"},
    {"https://a b", "it must not contain spaces or control characters"},
    {"https://a.b/\r\nX: y", "it must not contain spaces or control characters"},
    {"https://a.b/?x", "it must not contain '?' or '#': the query is written by airsync"},
    {"https://a.b/#x", "it must not contain '?' or '#': the query is written by airsync"},
    {"https://ann:pw@a.b", "it must not contain a login: use `user` and `password_command`"},
    {"https://[::1", "what stands between [ and ] is no IPv6 address"},
    {"https://[a.b]", "what stands between [ and ] is no IPv6 address"},
    {"https://[::1]x", "only :port may follow the host"},
    {"https://b\xc3\xbc.example",
     "a host name has only letters, digits, '.', '-' and '_' (write other letters in their xn-- form)"},
};

TEST(Url, IsRefusedWithTheReason) {
  for (const BadRow& row : kBad) {
    SCOPED_TRACE(row.text);
    try {
      parseUrl(row.text);
      ADD_FAILURE() << "it was accepted";
    } catch (const std::invalid_argument& error) {
      EXPECT_STREQ(error.what(), row.reason);
    }
  }
}

}  // namespace
}  // namespace airsync
