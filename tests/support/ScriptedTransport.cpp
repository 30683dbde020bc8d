#include "support/ScriptedTransport.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

#include "support/HostCode.h"

namespace airsync_test {

namespace {

// A flag other than 0 and 1 is shown, so that no expectation meets it.
std::string Kind(INT32 raw) {
  if (raw == 0) return " document";
  return raw == 1 ? " raw" : " " + std::to_string(raw);
}

void Fill(UINT8* destination, INT32 capacity, const std::string& text) {
  if (destination == nullptr || capacity <= 0) return;
  std::memcpy(destination, text.data(), std::min(static_cast<std::size_t>(capacity), text.size()));
}

}  // namespace

std::vector<std::string> ScriptedTransport::Lines() const {
  std::vector<std::string> lines;
  for (const TransportCall& call : calls_) lines.push_back(call.line);
  return lines;
}

std::size_t ScriptedTransport::Count(const std::string& line) const {
  return static_cast<std::size_t>(
      std::count_if(calls_.begin(), calls_.end(), [&](const auto& call) { return call.line == line; }));
}

std::size_t ScriptedTransport::Unread() const {
  std::size_t unread = 0;
  for (std::size_t i = piece_; i < current_.pieces.size(); ++i) unread += current_.pieces[i].size();
  return unread - offset_;
}

SYNC_RESULT ScriptedTransport::Begin(const std::string& line, const std::string& bytes) {
  calls_.push_back({line, bytes});
  const std::size_t number = ++count_;
  if (observer_) observer_(number, line);
  return number == failAt_ ? failure_ : 0;
}

// False when there is none.
bool ScriptedTransport::TakeResponse() {
  current_ = ScriptedResponse{{}};
  piece_ = 0;
  offset_ = 0;
  if (responses_.empty()) {
    if (!failsAtEnd_) ADD_FAILURE() << "a response was asked for that the script does not have";
    return false;
  }
  current_ = std::move(responses_.front());
  responses_.pop_front();
  return true;
}

SYNC_RESULT ScriptedTransport::Open(const SERVER_INFO* server) {
  const HostCode host;
  openedServer_ = server;
  return Begin("Open");
}

SYNC_RESULT ScriptedTransport::SendHeader(const char* head, INT32 length, UINT32 contentLength) {
  const HostCode host;
  EXPECT_EQ(head[length - 1], '\0') << "the head's length counts its terminator";
  const std::string text(head, static_cast<std::size_t>(length - 1));
  const SYNC_RESULT result =
      Begin(std::string("SendHeader ") + std::to_string(length) + " " + std::to_string(contentLength), text);
  if (result == 0) requests_.push_back({text, contentLength, {}});
  return result;
}

SYNC_RESULT ScriptedTransport::EndRequest() {
  const HostCode host;
  return Begin("EndRequest");
}

SYNC_RESULT ScriptedTransport::Write(const UINT8* bytes, INT32 count, INT32 raw) {
  const HostCode host;
  EXPECT_GE(count, 0);  // 0 for a message without a byte
  const std::string text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
  const SYNC_RESULT result = Begin(std::string("Write ") + std::to_string(count) + Kind(raw), text);
  if (result != 0) return result;
  if (requests_.empty()) requests_.push_back({});
  requests_.back().body += text;
  return 0;
}

SYNC_RESULT ScriptedTransport::ReadResponseHead(UINT16* status, UINT8** destination, UINT32* length, bool raw,
                                                UINT8* first, INT32 firstLength, UINT8* second,
                                                INT32 secondLength) {
  const HostCode host;
  std::string line = "ReadResponseHead";
  if (*destination != nullptr) line += std::string(" ") + std::to_string(*length);
  if (raw) line += " raw";
  const SYNC_RESULT result = Begin(line);
  if (result != 0) {
    *status = 0;
    return result;
  }
  const bool there = TakeResponse();
  if (++heads_ == refusedHead_) {
    *status = refusal_;
    return kFailure;
  }
  *status = there || !failsAtEnd_ ? current_.status : UINT16{0};
  Fill(first, firstLength, current_.first);
  Fill(second, secondLength, current_.second);
  return there || !failsAtEnd_ ? current_.headResult : kFailure;
}

SYNC_RESULT ScriptedTransport::Read(UINT8* destination, INT32* count, INT32 raw) {
  const HostCode host;
  EXPECT_GE(*count, raw != 0 ? 0 : 1);
  const SYNC_RESULT result = Begin(std::string("Read ") + std::to_string(*count) + Kind(raw));
  const std::size_t wanted = static_cast<std::size_t>(*count);
  *count = 0;
  if (result != 0 || wanted == 0) return result;
  while (piece_ < current_.pieces.size() && offset_ == current_.pieces[piece_].size()) {
    ++piece_;
    offset_ = 0;
  }
  if (piece_ == current_.pieces.size()) return kFailure;
  const std::string& piece = current_.pieces[piece_];
  const std::size_t delivered = std::min(wanted, piece.size() - offset_);
  std::memcpy(destination, piece.data() + offset_, delivered);
  offset_ += delivered;
  *count = static_cast<INT32>(delivered);
  return 0;
}

SYNC_RESULT ScriptedTransport::Close() {
  const HostCode host;
  return Begin("Close");
}

SYNC_RESULT ScriptedTransport::Reserved7() {
  ADD_FAILURE() << "the library calls no reserved operation";
  return 0;
}

SYNC_RESULT ScriptedTransport::Reserved8() { return Reserved7(); }

// Not counted: it comes from inside other calls.
SYNC_RESULT ScriptedTransport::Cancel() {
  const HostCode host;
  calls_.push_back({"Cancel", {}});
  return 0;
}

}  // namespace airsync_test
