// A transport without a network: it delivers exactly the bytes it is told to, in the pieces it is told to,
// and keeps everything that it was asked for.
#ifndef TESTS_SUPPORT_SCRIPTED_TRANSPORT_H
#define TESTS_SUPPORT_SCRIPTED_TRANSPORT_H

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "http/Transport.h"

namespace airsync_test {

using AIRSYNC_STACK::SERVER_INFO;
using AIRSYNC_STACK::SYNC_RESULT;

/// What the server answers to one request.
struct ScriptedResponse {
  /// The body. A Read gets at most what is left of the current piece: the end of a piece inside a Read makes
  /// it a short one. A Read behind the last piece fails.
  std::vector<std::string> pieces;
  UINT16 status = 200;
  SYNC_RESULT headResult = 0;
  /// What ReadResponseHead puts into its two buffers, as far as it fits.
  std::string first = {};
  std::string second = {};
};

/// One call as it arrived.
struct TransportCall {
  /// One line: "Open", "SendHeader 312 27", "EndRequest", "Write 4 document", "Write 4 raw",
  /// "ReadResponseHead", "ReadResponseHead 100 raw", "Read 1 document", "Read 80 raw", "Close", "Cancel".
  std::string line;
  std::string bytes;  // the head without its terminator, or the bytes of a Write
};

/// One request as it left: its head, the length announced, and all bytes written after it.
struct SentRequest {
  std::string head;
  UINT32 contentLength = 0;
  std::string body;
};

class ScriptedTransport : public AIRSYNC_STACK::AirSyncTransportInterface {
 public:
  /// What Read and the others return when they are to fail, unless told otherwise.
  static constexpr SYNC_RESULT kFailure = 0x80009999;

  ScriptedTransport() = default;
  explicit ScriptedTransport(const std::string& body) { Answer(body); }

  /// Adds a response: ReadResponseHead takes the next one.
  void Answer(ScriptedResponse response) { responses_.push_back(std::move(response)); }
  void Answer(const std::string& body) { Answer(ScriptedResponse{{body}}); }

  /// Responses that were not taken are no longer there.
  void ForgetAnswers() { responses_.clear(); }

  /// The k-th call from now on, counted from 1 (Cancel does not count), returns `result`; 0 for none.
  void FailAt(std::size_t k, SYNC_RESULT result = kFailure) {
    failAt_ = k == 0 ? 0 : count_ + k;
    failure_ = result;
  }

  /// The k-th ReadResponseHead from now on, counted from 1, is refused with this HTTP status; 0 for none.
  void RefuseHead(std::size_t k, UINT16 status) {
    refusedHead_ = k == 0 ? 0 : heads_ + k;
    refusal_ = status;
  }

  /// From now on a request for a response that the script does not have fails like any call of a transport;
  /// without it, it fails the test.
  void FailWhereTheScriptEnds() { failsAtEnd_ = true; }

  /// Called at the start of each call with its number, counted from 1, and its line.
  void OnCall(std::function<void(std::size_t, const std::string&)> observer) {
    observer_ = std::move(observer);
  }

  /// For tests without a request: Read delivers from the next response at once.
  void BeginBody() { TakeResponse(); }

  const std::vector<TransportCall>& Calls() const { return calls_; }
  std::vector<std::string> Lines() const;
  std::size_t Count(const std::string& line) const;
  const std::vector<SentRequest>& Requests() const { return requests_; }
  const SERVER_INFO* OpenedServer() const { return openedServer_; }
  /// Bytes of the current body that were not read.
  std::size_t Unread() const;
  std::size_t CallCount() const { return count_; }
  void ClearCalls() { calls_.clear(); }

  SYNC_RESULT Open(const SERVER_INFO* server) override;
  SYNC_RESULT SendHeader(const char* head, INT32 length, UINT32 contentLength) override;
  SYNC_RESULT EndRequest() override;
  SYNC_RESULT Write(const UINT8* bytes, INT32 count, INT32 raw) override;
  SYNC_RESULT ReadResponseHead(UINT16* status, UINT8** destination, UINT32* length, bool raw, UINT8* first,
                               INT32 firstLength, UINT8* second, INT32 secondLength) override;
  SYNC_RESULT Read(UINT8* destination, INT32* count, INT32 raw) override;
  SYNC_RESULT Close() override;
  SYNC_RESULT Reserved7() override;
  SYNC_RESULT Reserved8() override;
  SYNC_RESULT Cancel() override;

 private:
  SYNC_RESULT Begin(const std::string& line, const std::string& bytes = {});
  bool TakeResponse();

  std::deque<ScriptedResponse> responses_;
  ScriptedResponse current_;
  std::size_t piece_ = 0;   // of the current body
  std::size_t offset_ = 0;  // in the piece
  std::vector<TransportCall> calls_;
  std::vector<SentRequest> requests_;
  const SERVER_INFO* openedServer_ = nullptr;
  std::size_t count_ = 0;
  std::size_t failAt_ = 0;
  SYNC_RESULT failure_ = kFailure;
  std::size_t heads_ = 0;
  std::size_t refusedHead_ = 0;
  UINT16 refusal_ = 0;
  bool failsAtEnd_ = false;
  std::function<void(std::size_t, const std::string&)> observer_;
};

}  // namespace airsync_test

#endif
