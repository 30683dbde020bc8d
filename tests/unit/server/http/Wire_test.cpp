#include "http/Wire.h"

#include <gtest/gtest.h>

namespace demoserver {
namespace {

TEST(DemoWire, WritesAHeadWithALength) {
  EXPECT_EQ(wireHead({200, "a/b", "body", {{"X-One", "1"}}}, {}),
            "HTTP/1.1 200 OK\r\nServer: airsync-demo-server\r\nX-One: 1\r\nContent-Type: a/b\r\n"
            "Content-Length: 4\r\nConnection: keep-alive\r\n\r\n");
}

TEST(DemoWire, AnEmptyBodyHasNoType) {
  EXPECT_EQ(wireHead({503, "a/b", "", {}}, {.keepAlive = false}),
            "HTTP/1.1 503 Service Unavailable\r\nServer: airsync-demo-server\r\nContent-Length: 0\r\n"
            "Connection: close\r\n\r\n");
}

TEST(DemoWire, ChunksReplaceTheLength) {
  EXPECT_EQ(wireHead({418, "", "x", {}}, {.keepAlive = true, .chunked = true}),
            "HTTP/1.1 418 Status\r\nServer: airsync-demo-server\r\nTransfer-Encoding: chunked\r\n"
            "Connection: keep-alive\r\n\r\n");
  EXPECT_EQ(chunked("abcdefg", 3), "3\r\nabc\r\n3\r\ndef\r\n1\r\ng\r\n0\r\n\r\n");
  EXPECT_EQ(chunked("abcdefghijklmnopqrst", 16), "10\r\nabcdefghijklmnop\r\n4\r\nqrst\r\n0\r\n\r\n");
  EXPECT_EQ(chunked("", 3), "0\r\n\r\n");
}

}  // namespace
}  // namespace demoserver
