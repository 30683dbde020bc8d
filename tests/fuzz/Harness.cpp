#include "fuzz/Harness.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace airsync_fuzz {

namespace {

// What the interface says that a document can provoke: a second attribute, an extension as an attribute's
// value, or a bare ">" in XML; and, for the parser alone, the root of another command.
constexpr std::array kExpectedStops = {
    "pSmlElement->NumberOfAttributes < 1",
    "__null == &In",
    "!SmlStrcmp(SE_GetTag(",
};

std::jmp_buf stop;
bool mayStop = false;

bool IsExpected(const char* expression) {
  return std::any_of(kExpectedStops.begin(), kExpectedStops.end(), [expression](const char* expected) {
    return std::strncmp(expression, expected, std::strlen(expected)) == 0;
  });
}

}  // namespace

// Called for an assertion that failed, in place of the C library's.
[[noreturn]] void AssertionFailed(const char* expression, const char* file, unsigned line) {
  if (mayStop && IsExpected(expression)) std::longjmp(stop, 1);
  std::fprintf(stderr, "%s:%u: assertion failed: %s\n", file, line, expression);
  std::abort();
}

void UntilExpectedStop(const std::function<void()>& body) {
  mayStop = true;
  if (setjmp(stop) == 0) body();
  mayStop = false;
}

volatile std::uint64_t kept;  // not local: its value counts as used

void Keep(std::uint64_t value) { kept = value; }

void Touch(const char* text) {
  if (text != nullptr) Keep(std::strlen(text));
}

void Require(bool promise, const char* what) {
  if (promise) return;
  std::fprintf(stderr, "broken promise: %s\n", what);
  std::abort();
}

BodyTransport::SYNC_RESULT BodyTransport::SendHeader(const char* head, INT32 length, UINT32) {
  Require(length > 0 && std::strlen(head) == static_cast<std::size_t>(length) - 1, "a head is terminated");
  return 0;
}

BodyTransport::SYNC_RESULT BodyTransport::Write(const UINT8* bytes, INT32 count, INT32) {
  for (INT32 i = 0; i < count; ++i) Keep(bytes[i]);
  return 0;
}

BodyTransport::SYNC_RESULT BodyTransport::ReadResponseHead(UINT16* status, UINT8**, UINT32*, bool,
                                                           UINT8* first, INT32 firstLength, UINT8* second,
                                                           INT32 secondLength) {
  const auto fill = [this](UINT8* buffer, INT32 size) {
    if (buffer != nullptr && size > 0) {
      std::memcpy(buffer, body_.data(), std::min(body_.size(), static_cast<std::size_t>(size)));
    }
  };
  if (answersLeft_-- <= 0) {
    *status = 503;
    return 1;
  }
  *status = 200;
  fill(first, firstLength);
  fill(second, secondLength);
  at_ = 0;
  return 0;
}

BodyTransport::SYNC_RESULT BodyTransport::Read(UINT8* destination, INT32* count, INT32) {
  const std::size_t delivered = std::min(static_cast<std::size_t>(*count), body_.size() - at_);
  std::memcpy(destination, body_.data() + at_, delivered);
  at_ += delivered;
  *count = static_cast<INT32>(delivered);
  return 0;
}

}  // namespace airsync_fuzz

// The C library's own, which assert() calls.
extern "C" void __assert_fail(const char* expression, const char* file, unsigned line, const char*) noexcept {
  airsync_fuzz::AssertionFailed(expression, file, line);
}

// A length from the wire must not have its way: an allocation beyond this fails as on a full device.
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1:max_allocation_size_mb=64";
}
