#include "cli/ResultReach.h"

#include <gtest/gtest.h>

#include "transport/TransportError.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

struct Row {
  SYNC_RESULT result;
  ErrorKind reach;
};

// Every result that the library has, the families with the statuses at which something changes.
const Row kRows[] = {
    {0x8001000e, ErrorKind::item},       // too large
    {0x80000000, ErrorKind::folder},     // not selected
    {0x80000001, ErrorKind::folder},     // invalid argument
    {0x800000ff, ErrorKind::folder},     // no request
    {0x8001000b, ErrorKind::folder},     // malformed
    {0x8001000c, ErrorKind::folder},     // transport
    {0x8001000d, ErrorKind::folder},     // memory
    {0x80010011, ErrorKind::folder},     // another collection
    {0x80010013, ErrorKind::folder},     // HTTP 400
    {0x80010014, ErrorKind::folder},     // HTTP 500
    {0x8001000f, ErrorKind::account},    // address
    {0x80010012, ErrorKind::account},    // HTTP 401
    {0x80010010, ErrorKind::cancelled},  // cancelled
    {0x80010109, ErrorKind::folder},     // the families
    {0x80010704, ErrorKind::folder},
    {0x80010802, ErrorKind::folder},
    {0x80010a02, ErrorKind::folder},
    {0x80010e03, ErrorKind::folder},
    {0x80010f00, ErrorKind::folder},  // a Sync's status of 256
    {0xffffffff, ErrorKind::folder},  // and of -1
    {0x80020000, ErrorKind::folder},  // HTTP: no status, 300, 301, 302, 303, 304, 307, 308
    {0x8002012c, ErrorKind::folder},
    {0x8002012d, ErrorKind::account},
    {0x8002012e, ErrorKind::account},
    {0x8002012f, ErrorKind::account},
    {0x80020130, ErrorKind::folder},
    {0x80020133, ErrorKind::account},
    {0x80020134, ErrorKind::account},
    {0x80020193, ErrorKind::account},  // 403, 404, 407, 408, 413, 429,
                                       // 449
    {0x80020194, ErrorKind::folder},
    {0x80020197, ErrorKind::account},
    {0x80020198, ErrorKind::folder},
    {0x8002019d, ErrorKind::folder},
    {0x800201ad, ErrorKind::account},
    {0x800201c1, ErrorKind::account},
    {0x800201f5, ErrorKind::folder},  // 501, 502, 503, 504, 507
    {0x800201f6, ErrorKind::folder},
    {0x800201f7, ErrorKind::folder},
    {0x800201f8, ErrorKind::folder},
    {0x800201fb, ErrorKind::folder},
};

TEST(ResultReach, OfEachResult) {
  for (const Row& row : kRows) EXPECT_EQ(reachOf(row.result), row.reach) << std::hex << row.result;
}

TEST(ResultReach, OfEachKindOfTransportErrors) {
  using Kind = TransportErrorKind;
  for (const Kind kind : {Kind::kConfiguration, Kind::kResolve, Kind::kConnect, Kind::kConnectTimeout,
                          Kind::kTlsExpired, Kind::kTlsNotYetValid, Kind::kTlsSelfSigned, Kind::kTlsUntrusted,
                          Kind::kTlsWrongHost, Kind::kTlsProtocolVersion, Kind::kTls}) {
    EXPECT_EQ(reachOf(resultOf(kind)), ErrorKind::account) << nameOf(kind);
  }
  for (const Kind kind : {Kind::kIdleTimeout, Kind::kTotalTimeout, Kind::kProtocol, Kind::kClosedEarly,
                          Kind::kBodyEnded, Kind::kTooLarge, Kind::kHttpStatus, Kind::kInternal}) {
    EXPECT_EQ(reachOf(resultOf(kind)), ErrorKind::folder) << nameOf(kind);
  }
  EXPECT_EQ(reachOf(resultOf(Kind::kCancelled)), ErrorKind::cancelled);
}

}  // namespace
}  // namespace airsync
