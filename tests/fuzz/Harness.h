// What the fuzz programs of the library stand on.
//
// An assertion that a document can provoke by design ends the input that provoked it, not the process: the
// library's interface says of each of them that it stops the process, and an application that must live on
// runs the library in a process of its own. Every other assertion is a finding.
#ifndef TESTS_FUZZ_HARNESS_H
#define TESTS_FUZZ_HARNESS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "api/AirSync.h"
#include "http/Transport.h"

namespace airsync_fuzz {

/// The input, taken from its front.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  /// 0 when nothing is left.
  std::uint8_t Byte() {
    if (rest_.empty()) return 0;
    const char byte = rest_.front();
    rest_.remove_prefix(1);
    return static_cast<std::uint8_t>(byte);
  }
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

/// Answers every request with the same body, up to a number of times: a server that promises more for ever
/// comes to an end.
class BodyTransport final : public AIRSYNC_STACK::AirSyncTransportInterface {
 public:
  typedef AIRSYNC_STACK::SYNC_RESULT SYNC_RESULT;

  BodyTransport(std::string_view body, int answers) : body_(body), answersLeft_(answers) {}

  /// The first body without a request: for the codecs alone.
  void BeginBody() { at_ = 0; }

  SYNC_RESULT Open(const AIRSYNC_STACK::SERVER_INFO*) override { return 0; }
  SYNC_RESULT SendHeader(const char* head, INT32 length, UINT32 contentLength) override;
  SYNC_RESULT EndRequest() override { return 0; }
  SYNC_RESULT Write(const UINT8* bytes, INT32 count, INT32 raw) override;
  SYNC_RESULT ReadResponseHead(UINT16* status, UINT8** destination, UINT32* length, bool raw, UINT8* first,
                               INT32 firstLength, UINT8* second, INT32 secondLength) override;
  SYNC_RESULT Read(UINT8* destination, INT32* count, INT32 raw) override;
  SYNC_RESULT Close() override { return 0; }
  SYNC_RESULT Reserved7() override { return 0; }
  SYNC_RESULT Reserved8() override { return 0; }
  SYNC_RESULT Cancel() override { return 0; }

 private:
  std::string_view body_;
  std::size_t at_ = 0;
  int answersLeft_;
};

/// Runs `body` until it ends or meets an assertion that a document can provoke. It holds no object with a
/// destructor while that may happen.
void UntilExpectedStop(const std::function<void()>& body);

/// Keeps the compiler from leaving out what made the value.
void Keep(std::uint64_t value);

/// Reads every byte of a text, so that a sanitizer sees one that does not end.
void Touch(const char* text);

/// Stops the process when a promise is broken.
void Require(bool promise, const char* what);

}  // namespace airsync_fuzz

#endif
