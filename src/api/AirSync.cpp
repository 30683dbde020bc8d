// The facade's lifecycle, its error frame and the Sync command. The other commands are in files of their own.
#include "api/AirSync.h"

#include <cstdio>
#include <cstdlib>
#include <new>

#include "api/ErrorFrame.h"
#include "api/Exchange.h"
#include "generator/Generator.h"
#include "http/Communications.h"
#include "parser/Parser.h"
#include "support/Memory.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

// Needs neither a constructor's call nor a destructor's: it is there before and after everything else.
AirSync AirSync::instance;

AirSync* AirSync::getInstance() { return &instance; }

void AirSync::destroyInstance() {
  if (FrameArmed()) return;
  instance.cancelTarget_.store(nullptr, std::memory_order_relaxed);
  instance.cancelFlag_.store(0, std::memory_order_relaxed);
  instance.encoding_ = ENCODING_XML;
  instance.server_ = SERVER_INFO();
  SmlMemset(instance.reserved64_, 0, sizeof(reserved64_));
  SmlMemset(instance.reserved32_, 0, sizeof(reserved32_));
  instance.transport_ = nullptr;
  instance.storage_ = nullptr;
  instance.generator_ = nullptr;
  instance.parser_ = nullptr;
  instance.lastSyncKey_ = _SYNC_KEY();
  instance.communications_ = nullptr;
  instance.log_ = nullptr;
}

SYNC_RESULT AirSync::Initialize(const SERVER_INFO& server, const char* deviceId,
                                AirSyncTransportInterface* transport, AirSyncDBInterface* storage,
                                ENCODINGTYPE encoding, Log* log) {
  if (FrameArmed()) return AS_RESULT_INVALID_ARGUMENT;
  if (log_ != nullptr) {
    log_->write(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_TRACE,
                "Device Id is: ", deviceId == nullptr ? "" : deviceId);
  }
  server_ = server;
  encoding_ = encoding;
  if (transport == nullptr || storage == nullptr) return AS_RESULT_INVALID_ARGUMENT;
  cancelTarget_.store(nullptr, std::memory_order_relaxed);
  DoneWithAdapterMemory();
  delete generator_;
  delete parser_;
  // It knows the old account and the old transport.
  delete communications_;
  communications_ = nullptr;
  transport_ = transport;
  storage_ = storage;
  log_ = log;
  cancelFlag_.store(0, std::memory_order_relaxed);
  StartAdapterMemory();
  generator_ = new (std::nothrow) Generator(storage, encoding, log);
  parser_ = new (std::nothrow) Parser(log);
  if (generator_ == nullptr || parser_ == nullptr) {
    delete generator_;
    delete parser_;
    generator_ = nullptr;
    parser_ = nullptr;
    return AS_RESULT_OUT_OF_MEMORY;
  }
  return AS_RESULT_OK;
}

SYNC_RESULT AirSync::Connect() {
  if (generator_ == nullptr) return AS_RESULT_INVALID_ARGUMENT;
  return RunCommand([this]() -> SYNC_RESULT {
    Communications* comms = new (std::nothrow) Communications(server_, transport_, log_);
    if (comms == nullptr) AbortSync(AS_RESULT_OUT_OF_MEMORY);
    delete communications_;
    communications_ = comms;
    // Another thread's CancelSync must find the host's object complete.
    cancelTarget_.store(transport_, std::memory_order_release);
    return comms->Start();
  });
}

SYNC_RESULT AirSync::Disconnect() {
  if (communications_ == nullptr) return AS_RESULT_INVALID_ARGUMENT;
  return RunCommand([this]() -> SYNC_RESULT {
    communications_->Stop();
    cancelTarget_.store(nullptr, std::memory_order_relaxed);
    delete communications_;
    communications_ = nullptr;
    return AS_RESULT_OK;
  });
}

SYNC_RESULT AirSync::Uninitialize() {
  if (FrameArmed()) return AS_RESULT_INVALID_ARGUMENT;
  cancelTarget_.store(nullptr, std::memory_order_relaxed);
  server_ = SERVER_INFO();
  SmlMemset(reserved64_, 0, sizeof(reserved64_));
  SmlMemset(reserved32_, 0, sizeof(reserved32_));
  DoneWithAdapterMemory();
  delete generator_;
  delete parser_;
  generator_ = nullptr;
  parser_ = nullptr;
  return AS_RESULT_OK;
}

// Neither the connection nor anything else that another operation may free meanwhile is touched here.
void AirSync::CancelSync() {
  cancelFlag_.store(1, std::memory_order_relaxed);
  AirSyncTransportInterface* transport = cancelTarget_.load(std::memory_order_acquire);
  if (transport != nullptr) transport->Cancel();
}

void AirSync::AbortSync(unsigned int code) {
  if (InnerFrameStart() != nullptr) {
    AdapterFreeNewerThan(InnerFrameStart());
  } else {
    cancelFlag_.store(0, std::memory_order_relaxed);
    if (generator_ != nullptr) generator_->ForgetTrackedMemory();
    if (parser_ != nullptr) parser_->ForgetTrackedMemory();
    DoneWithAdapterMemory();
  }
  if (!FrameArmed()) {
    static_cast<void>(std::fprintf(stderr, "AirSync::AbortSync(0x%08x) outside of an operation\n", code));
    std::abort();
  }
  longjmp(env, static_cast<int>(code));
}

SYNC_RESULT AirSync::Sync(const _SYNC_KEY& key, FOLDER_INFO* folder) {
  LogEntry("Into sync cmd");
  if (folder == nullptr) return AS_RESULT_INVALID_ARGUMENT;
  return RunCommand([this, &key, folder]() -> SYNC_RESULT {
    if (folder->selected == 0) return AS_RESULT_FOLDER_NOT_SELECTED;
    lastSyncKey_ = key;
    if (log_ != nullptr) {
      log_->write(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_INFO, "begin sync db: ", folder != nullptr);
    }
    RequestBuilder().BeginSync(*folder);
    GENERATOR_STATUS generatorStatus = GENERATOR_NOT_RUN;
    Parser::PARSER_STATUS parserStatus = Parser::PARSER_NOT_RUN;
    while (generatorStatus != GENERATOR_DONE || parserStatus != Parser::PARSER_COMPLETE) {
      sml_element* request = RequestBuilder().Sync(&Connection(), folder, key, generatorStatus);
      if (generatorStatus == GENERATOR_ERROR) AbortSync(AS_RESULT_REQUEST_TOO_LARGE);
      if (request == nullptr) AbortSync(AS_RESULT_NO_REQUEST);
      SendRequest(Connection(), encoding_, request, "Sync", RequestLimit::kNone);
      sml_element* response = ReceiveResponse(Connection(), encoding_, "Sync");
      parser_->Sync(response, storage_, folder, parserStatus);
      SE_Destroy(response);
    }
    return AS_RESULT_OK;
  });
}

Generator& AirSync::RequestBuilder() {
  if (generator_ == nullptr) AbortSync(AS_RESULT_INVALID_ARGUMENT);
  return *generator_;
}

Communications& AirSync::Connection() {
  if (communications_ == nullptr || generator_ == nullptr) AbortSync(AS_RESULT_INVALID_ARGUMENT);
  return *communications_;
}

sml_element* AirSync::RunExchange(sml_element* request, const char* command, const char* root,
                                  RequestLimit limit) {
  if (request == nullptr) AbortSync(AS_RESULT_NO_REQUEST);
  SendRequest(Connection(), encoding_, request, command, limit);
  return ReceiveResponse(Connection(), encoding_, root);
}

void AirSync::LogEntry(const char* text) const {
  if (log_ != nullptr) log_->write(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_TRACE, text);
}

}  // namespace AIRSYNC_STACK
