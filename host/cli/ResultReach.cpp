#include "cli/ResultReach.h"

#include <algorithm>
#include <iterator>

#include "transport/TransportError.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

// What reaches further, or less far, than one folder.
struct Row {
  SYNC_RESULT first;
  SYNC_RESULT last;
  ErrorKind reach;
};

constexpr Row of(SYNC_RESULT result, ErrorKind reach) { return {result, result, reach}; }
constexpr Row ofHttp(SYNC_RESULT status, ErrorKind reach) {
  return of(AS_RESULT_FAMILY_HTTP | status, reach);
}
constexpr Row ofTransport(TransportErrorKind first, TransportErrorKind last, ErrorKind reach) {
  return {resultOf(first), resultOf(last), reach};
}

constexpr Row kReaches[] = {
    // One change is set aside, the others go out.
    of(AS_RESULT_REQUEST_TOO_LARGE, ErrorKind::item),

    of(AS_RESULT_FOLDER_NOT_SELECTED, ErrorKind::folder),
    of(AS_RESULT_INVALID_ARGUMENT, ErrorKind::folder),  // of an answer: a time zone that does not decode
    of(AS_RESULT_NO_REQUEST, ErrorKind::folder),
    of(AS_RESULT_MALFORMED_DOCUMENT, ErrorKind::folder),
    of(AS_RESULT_TRANSPORT_FAILED, ErrorKind::folder),
    of(AS_RESULT_OUT_OF_MEMORY, ErrorKind::folder),
    of(AS_RESULT_WRONG_COLLECTION, ErrorKind::folder),
    of(AS_RESULT_HTTP_BAD_REQUEST, ErrorKind::folder),
    of(AS_RESULT_HTTP_SERVER_ERROR, ErrorKind::folder),

    // The address is no server's.
    of(AS_RESULT_BAD_SERVER_ADDRESS, ErrorKind::account),
    ofHttp(301, ErrorKind::account),
    ofHttp(302, ErrorKind::account),
    ofHttp(303, ErrorKind::account),
    ofHttp(307, ErrorKind::account),
    ofHttp(308, ErrorKind::account),
    // The login is refused, by the server or by a proxy.
    of(AS_RESULT_HTTP_UNAUTHORIZED, ErrorKind::account),
    ofHttp(407, ErrorKind::account),
    // The device is refused, or must accept a policy first.
    ofHttp(403, ErrorKind::account),
    ofHttp(449, ErrorKind::account),
    // Too many requests: another one makes it worse.
    ofHttp(429, ErrorKind::account),

    // A full mailbox: what other folders have can still be received.
    ofHttp(507, ErrorKind::folder),

    // There is no way to the server: its name, its address, its certificate.
    ofTransport(TransportErrorKind::kConfiguration, TransportErrorKind::kConnectTimeout, ErrorKind::account),
    ofTransport(TransportErrorKind::kTlsExpired, TransportErrorKind::kTls, ErrorKind::account),

    of(AS_RESULT_CANCELLED, ErrorKind::cancelled),
    of(resultOf(TransportErrorKind::kCancelled), ErrorKind::cancelled),
};

}  // namespace

ErrorKind reachOf(SYNC_RESULT result) {
  const Row* row = std::find_if(std::begin(kReaches), std::end(kReaches), [result](const Row& each) {
    return each.first <= result && result <= each.last;
  });
  return row == std::end(kReaches) ? ErrorKind::folder : row->reach;
}

}  // namespace airsync
