#include "http/Communications.h"

#include <cstddef>

#include "support/Assert.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

// cppcheck-suppress passedByValue ; the interface takes it so
Communications::Communications(SERVER_INFO server, AirSyncTransportInterface* transport, Log* log)
    : server_(server), transport_(transport), log_(log) {
  EmptyHistory();
  LogTrace("Communications::Communications{");
  LogTrace("==================}");
}

Communications::~Communications() {
  LogTrace("Communications::~Communications{");
  LogTrace("==================}");
}

SYNC_RESULT Communications::Start() {
  LogTrace("Communications::Start{");
  CheckCancelled();
  const SYNC_RESULT result = transport_->Open(&server_);
  if (result != AS_RESULT_OK) AirSync::getInstance()->AbortSync(result);
  EmptyHistory();
  LogTrace("Communications::Start}");
  return AS_RESULT_OK;
}

SYNC_RESULT Communications::Prologue(UINT32 contentLength, const char* cmd, ENCODINGTYPE encoding,
                                     const char* method) {
  static const char kHeadLabel[] = "Communications::Prologue, http header now is ";
  LogTrace("Communications::Prologue{");
  CheckCancelled();
  char head[kHeadCapacity];
  if (!BuildHttpHeader(head, contentLength, server_, cmd, encoding, method)) {
    AirSync::getInstance()->AbortSync(AS_RESULT_INVALID_ARGUMENT);
  }
  if (log_ != nullptr) {
    log_->write(AS_LOG_SOURCE_COMMUNICATIONS, AS_LOG_LEVEL_DETAIL, kHeadLabel, head);
    log_->write(AS_LOG_SOURCE_COMMUNICATIONS, AS_LOG_LEVEL_DETAIL, kHeadLabel, contentLength);
  }
  const INT32 length = static_cast<INT32>(SmlStrlen(head)) + 1;
  if (transport_->SendHeader(head, length, contentLength) != AS_RESULT_OK) {
    AirSync::getInstance()->AbortSync(AS_RESULT_TRANSPORT_FAILED);
  }
  LogTrace("Communications::Prologue}");
  return AS_RESULT_OK;
}

void Communications::Send(UINT8* bytes, int count) { Write(bytes, count, 0); }

void Communications::SendFile(UINT8* bytes, int count) { Write(bytes, count, 1); }

void Communications::Write(const UINT8* bytes, int count, INT32 raw) {
  CheckCancelled();
  if (transport_->Write(bytes, count, raw) != AS_RESULT_OK) {
    AirSync::getInstance()->AbortSync(AS_RESULT_TRANSPORT_FAILED);
  }
}

void Communications::CountOutStream(UINT8*, int count) { outCount_ += count; }

void Communications::Epilogue() {
  LogTrace("Communications::Epilogue{}");
  if (transport_->EndRequest() != AS_RESULT_OK) {
    AirSync::getInstance()->AbortSync(AS_RESULT_TRANSPORT_FAILED);
  }
}

void Communications::Stop() {
  LogTrace("Communications::Stop{}");
  transport_->Close();
}

void Communications::CancelSync() { transport_->Cancel(); }

SYNC_RESULT Communications::ReadHTTPHeader() { return BeforeRead(nullptr, 0, false, nullptr, 0, nullptr, 0); }

SYNC_RESULT Communications::BeforeRead(UINT8* destination, UINT32 length, bool flag, UINT8* first,
                                       INT32 firstLength, UINT8* second, INT32 secondLength) {
  LogTrace("Communications::BeforeRead{}");
  CheckCancelled();
  EmptyHistory();
  UINT16 status = 0;
  const SYNC_RESULT result = transport_->ReadResponseHead(&status, &destination, &length, flag, first,
                                                          firstLength, second, secondLength);
  // No head came: where that is the cancel's doing, it was no answer, and no failure of the server's.
  if (status == 0) CheckCancelled();
  if (result == AS_RESULT_OK) return AS_RESULT_OK;
  switch (status) {
    case 401:
      AirSync::getInstance()->AbortSync(AS_RESULT_HTTP_UNAUTHORIZED);
    case 400:
      AirSync::getInstance()->AbortSync(AS_RESULT_HTTP_BAD_REQUEST);
    case 500:
      AirSync::getInstance()->AbortSync(AS_RESULT_HTTP_SERVER_ERROR);
    default:
      AirSync::getInstance()->AbortSync(AS_RESULT_FAMILY_HTTP | status);
  }
}

void Communications::Read(UINT8* destination, int count) {
  if (count == 1) {
    *destination = ReadByte();
    return;
  }
  CheckCancelled();
  if (count <= 0) {
    // A step further back than the history reaches is caught by the assertion, wherever it would have led.
    const bool tooFar = count < g_ReadBuffer - g_ReadBufferPosition;
    g_ReadBufferPosition = tooFar ? g_ReadBuffer - 1 : g_ReadBufferPosition + count;
    assert(g_ReadBufferPosition >= g_ReadBuffer);
    return;
  }
  ReadSome(destination, count);
}

void Communications::ReadSome(UINT8* destination, int count) {
  if (BufferedBytesAvaliable() > 0) {
    const int taken =
        ReadFromBuffer(destination, static_cast<unsigned int>(count < kHistory ? count : kHistory));
    if (taken == count) return;
    destination += taken;
    count -= taken;
  }
  ReadFromTransport(destination, count);
  NotifyBufferOfRead(destination, count);
}

void Communications::ReadFailed(SYNC_RESULT result) {
  if (result == AS_RESULT_OK) CheckCancelled();
  AirSync::getInstance()->AbortSync(AS_RESULT_TRANSPORT_FAILED);
}

void Communications::ReadFile(UINT8* destination, int count) {
  CheckCancelled();
  INT32 delivered = count;
  if (transport_->Read(destination, &delivered, 1) != AS_RESULT_OK) {
    AirSync::getInstance()->AbortSync(AS_RESULT_TRANSPORT_FAILED);
  }
  if (delivered != count) CheckCancelled();
}

UINT16 Communications::BufferedBytesAvaliable() const {
  return static_cast<UINT16>(g_ReadBuffer + kHistory - g_ReadBufferPosition);
}

UINT16 Communications::ReadFromBuffer(UINT8* destination, unsigned int BytesRequested) {
  const UINT16 wanted = static_cast<UINT16>(BytesRequested);
  const UINT16 buffered = BufferedBytesAvaliable();
  const UINT16 taken = wanted < buffered ? wanted : buffered;
  if (destination != nullptr) {
    BytesRequested = wanted;
    assert(BytesRequested > 0);
    if (taken > 0) SmlMemcpy(destination, g_ReadBufferPosition, taken);
  }
  g_ReadBufferPosition += taken;
  assert(g_ReadBufferPosition >= g_ReadBuffer);
  assert(g_ReadBufferPosition <= g_ReadBuffer + (5 + 64));
  return taken;
}

void Communications::NotifyBufferOfRead(const UINT8* data, int count) {
  if (count <= 0) return;
  const int kept = count < kHistory ? count : kHistory;
  const UINT8* newest = data + (count - kept);
  UINT8* end = g_ReadBuffer + kHistory;
  if (area_ + sizeof(area_) - end < kept) {
    // The area is used up: begin again at its start with what stays of the history.
    const std::ptrdiff_t position = g_ReadBufferPosition - g_ReadBuffer;
    SmlMemmove(area_ + 1, g_ReadBuffer + kept, static_cast<UINT32>(kHistory - kept));
    g_ReadBuffer = area_ + 1;
    g_ReadBufferPosition = g_ReadBuffer + position;
    SmlMemcpy(g_ReadBuffer + kHistory - kept, newest, static_cast<UINT32>(kept));
    return;
  }
  SmlMemcpy(end, newest, static_cast<UINT32>(kept));
  g_ReadBuffer += kept;
  g_ReadBufferPosition += kept;
}

void Communications::EmptyHistory() {
  g_ReadBuffer = area_ + 1;
  g_ReadBufferPosition = g_ReadBuffer + kHistory;
}

void Communications::LogTrace(const char* text) const {
  if (log_ != nullptr) log_->write(AS_LOG_SOURCE_COMMUNICATIONS, AS_LOG_LEVEL_TRACE, text);
}

}  // namespace AIRSYNC_STACK
