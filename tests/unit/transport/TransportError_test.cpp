#include "transport/TransportError.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace airsync {
namespace {

using Kind = TransportErrorKind;
using Class = TransportErrorClass;

TEST(TransportError, MakesResultsOfItsOwnFamilyWithTheTopBitSet) {
  EXPECT_EQ(resultOf(Kind::kNone), 0U);
  EXPECT_EQ(resultOf(Kind::kConfiguration), 0x80030001U);
  EXPECT_EQ(resultOf(Kind::kResolve), 0x80030002U);
  EXPECT_EQ(resultOf(Kind::kInternal), 0x80030015U);
}

struct ClassCase {
  Kind kind;
  Class errorClass;
  const char* name;
};

TEST(TransportError, ClassifiesAndNamesEveryKind) {
  const std::vector<ClassCase> cases = {
      {Kind::kNone, Class::kNone, "none"},
      {Kind::kConfiguration, Class::kConfiguration, "configuration"},
      {Kind::kResolve, Class::kNetwork, "resolve"},
      {Kind::kConnect, Class::kNetwork, "connect"},
      {Kind::kConnectTimeout, Class::kNetwork, "connect-timeout"},
      {Kind::kIdleTimeout, Class::kNetwork, "idle-timeout"},
      {Kind::kTotalTimeout, Class::kNetwork, "total-timeout"},
      {Kind::kTlsExpired, Class::kTls, "tls-expired"},
      {Kind::kTlsNotYetValid, Class::kTls, "tls-not-yet-valid"},
      {Kind::kTlsSelfSigned, Class::kTls, "tls-self-signed"},
      {Kind::kTlsUntrusted, Class::kTls, "tls-untrusted"},
      {Kind::kTlsWrongHost, Class::kTls, "tls-wrong-host"},
      {Kind::kTlsProtocolVersion, Class::kTls, "tls-protocol-version"},
      {Kind::kTls, Class::kTls, "tls"},
      {Kind::kProtocol, Class::kServer, "protocol"},
      {Kind::kClosedEarly, Class::kNetwork, "closed-early"},
      {Kind::kBodyEnded, Class::kServer, "body-ended"},
      {Kind::kTooLarge, Class::kServer, "too-large"},
      {Kind::kHttpStatus, Class::kServer, "http-status"},
      {Kind::kAnsweredEarly, Class::kServer, "answered-early"},
      {Kind::kCancelled, Class::kCancelled, "cancelled"},
      {Kind::kInternal, Class::kInternal, "internal"},
  };
  for (const ClassCase& row : cases) {
    EXPECT_EQ((TransportError{row.kind, 0, {}, {}}).errorClass(), row.errorClass) << row.name;
    EXPECT_EQ(nameOf(row.kind), row.name);
  }
}

TEST(TransportError, TakesOnlyStatus401ForARefusedLogin) {
  EXPECT_EQ((TransportError{Kind::kHttpStatus, 401, {}, {}}).errorClass(), Class::kLogin);
  EXPECT_EQ((TransportError{Kind::kHttpStatus, 403, {}, {}}).errorClass(), Class::kServer);
  EXPECT_EQ((TransportError{Kind::kClosedEarly, 401, {}, {}}).errorClass(), Class::kNetwork);
}

TEST(TransportError, JoinsWhatFailedAndWhatToDo) {
  EXPECT_EQ((TransportError{Kind::kConnect, 0, "It failed.", "Try again."}).sentence(),
            "It failed. Try again.");
  EXPECT_EQ((TransportError{Kind::kCancelled, 0, "Cancelled.", ""}).sentence(), "Cancelled.");
}

TEST(TransportError, MakesForeignTextPrintable) {
  EXPECT_EQ(printable("a\r\n\x1b[31m\x7f b"), "a???[31m? b");
  EXPECT_EQ(printable("Gr\xc3\xbc\xc3\x9f"), "Gr\xc3\xbc\xc3\x9f");
  EXPECT_EQ(printable("abcdef", 3), "abc...");
  EXPECT_EQ(printable("abc", 3), "abc");
}

}  // namespace
}  // namespace airsync
