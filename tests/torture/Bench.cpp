#include "torture/Bench.h"

#include <cstdio>
#include <new>
#include <thread>
#include <utility>

#include "api/ErrorFrame.h"
#include "torture/FailingNew.h"

namespace torture {

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;

// More than any of these conversations needs: a damaged length must not have its way.
constexpr UINT32 kMostMemory = 16 * 1024 * 1024;

std::string InHex(SYNC_RESULT result) {
  char text[11];
  std::snprintf(text, sizeof text, "0x%08x", result);
  return text;
}

bool IsFamily(SYNC_RESULT result, SYNC_RESULT family) { return (result & ~SYNC_RESULT{0xff}) == family; }

// A changed byte may be anything that a server may say.
bool MayComeFromAServer(SYNC_RESULT result) {
  switch (result) {
    case AS_RESULT_OK:
    case AS_RESULT_INVALID_ARGUMENT:  // a time-zone block that does not decode
    case AS_RESULT_MALFORMED_DOCUMENT:
    case AS_RESULT_TRANSPORT_FAILED:
    case AS_RESULT_OUT_OF_MEMORY:  // a length beyond the host's memory
    case AS_RESULT_WRONG_COLLECTION:
    case AS_RESULT_FAMILY_HTTP:  // the next exchange has no answer
      return true;
    default:
      return IsFamily(result, AS_RESULT_FAMILY_FOLDER) || IsFamily(result, AS_RESULT_FAMILY_SYNC) ||
             IsFamily(result, AS_RESULT_FAMILY_MEETING) || IsFamily(result, AS_RESULT_FAMILY_NOTIFY);
  }
}

SYNC_RESULT ResultOfStatus(unsigned status) {
  switch (status) {
    case 400:
      return AS_RESULT_HTTP_BAD_REQUEST;
    case 401:
      return AS_RESULT_HTTP_UNAUTHORIZED;
    case 500:
      return AS_RESULT_HTTP_SERVER_ERROR;
    default:
      return AS_RESULT_FAMILY_HTTP | status;
  }
}

// Where in the answers the k-th byte of all of them is.
std::pair<std::size_t, std::size_t> PlaceOf(const std::vector<std::string>& answers, std::size_t k) {
  std::size_t index = 0;
  std::size_t offset = k - 1;
  while (offset >= answers[index].size()) offset -= answers[index++].size();
  return {index, offset};
}

bool BeginsWith(const std::string& text, const char* beginning) { return text.rfind(beginning, 0) == 0; }

}  // namespace

Bench::Bench(const Scenario& scenario) : scenario_(scenario), session_(scenario.encoding) {
  session_.transport.FailWhereTheScriptEnds();
  Prepare();
  for (const std::string& answer : scenario_.answers) session_.transport.Answer(answer);
  const std::size_t callsBefore = session_.transport.CallCount();
  const SYNC_RESULT result = scenario_.run(session_);
  events_.allocations = FailingMemory::Allocations();
  events_.transportCalls = session_.transport.CallCount() - callsBefore;
  for (const std::string& line : session_.transport.Lines()) {
    events_.heads += BeginsWith(line, "ReadResponseHead") ? 1 : 0;
  }
  events_.storageCalls = session_.store.Calls().size();
  for (const std::string& answer : scenario_.answers) events_.bytes += answer.size();
  undisturbed_ = Trace();
  if (result != scenario_.expected) problem_ = "the undisturbed run ended with " + InHex(result);
  Release(result);
  Release(RunFromTheStart(0, events_.objects));
}

std::vector<Fault> Bench::Faults() const {
  std::vector<Fault> faults;
  const auto each = [&faults](FaultKind kind, std::size_t count) {
    for (std::size_t k = 1; k <= count; ++k) faults.push_back({kind, k});
  };
  each(FaultKind::allocation, events_.allocations);
  each(FaultKind::object, events_.objects);
  each(FaultKind::transport, events_.transportCalls);
  for (const unsigned status : kStatuses) {
    for (std::size_t k = 1; k <= events_.heads; ++k) faults.push_back({FaultKind::status, k, status});
  }
  each(FaultKind::cut, events_.bytes);
  for (const unsigned value : kBytes) {
    for (std::size_t k = 1; k <= events_.bytes; ++k) faults.push_back({FaultKind::byte, k, value});
  }
  each(FaultKind::cancelTransport, events_.transportCalls);
  each(FaultKind::cancelThread, events_.transportCalls);
  each(FaultKind::cancelStorage, events_.storageCalls);
  each(FaultKind::cancelAllocation, events_.allocations);
  return faults;
}

void Bench::Prepare() {
  FailingMemory::Reset();
  FailingMemory::OnAllocation(nullptr);
  session_.transport.OnCall(nullptr);
  session_.transport.ForgetAnswers();
  session_.transport.FailAt(0);
  session_.transport.ClearCalls();
  session_.store.OnCall(nullptr);
  session_.store.ForgetChanges();
  session_.store.ClearCalls();
  session_.folder = TestFolder();
  Put(session_.key.text, "h1");
  session_.entry = {"New", 12, {"9"}, {"3"}};
  scenario_.prepare(session_);
}

void Bench::Inject(const Fault& fault, std::vector<std::string>& answers) {
  const auto cancel = [this] { session_.airSync->CancelSync(); };
  const auto atTransportCall = [this, &fault](std::function<void()> action) {
    const std::size_t number = session_.transport.CallCount() + fault.at;
    session_.transport.OnCall([number, action](std::size_t call, const std::string&) {
      if (call == number) action();
    });
  };
  switch (fault.kind) {
    case FaultKind::allocation:
      FailingMemory::FailAt(fault.at);
      break;
    case FaultKind::object:
      break;  // by RunFromTheStart
    case FaultKind::transport:
      session_.transport.FailAt(fault.at);
      break;
    case FaultKind::status:
      session_.transport.RefuseHead(fault.at, static_cast<UINT16>(fault.value));
      break;
    case FaultKind::cut: {
      const auto [index, offset] = PlaceOf(answers, fault.at);
      answers.resize(index + 1);
      answers.back().resize(offset);
      break;
    }
    case FaultKind::byte: {
      const auto [index, offset] = PlaceOf(answers, fault.at);
      answers[index][offset] = static_cast<char>(fault.value);
      break;
    }
    case FaultKind::cancelTransport:
      atTransportCall(cancel);
      break;
    case FaultKind::cancelThread:
      atTransportCall([cancel] { std::thread(cancel).join(); });
      break;
    case FaultKind::cancelStorage:
      session_.store.OnCall([cancel, left = fault.at](const StoreCall&) mutable {
        if (--left == 0) cancel();
      });
      break;
    case FaultKind::cancelAllocation:
      FailingMemory::OnAllocation([cancel, at = fault.at](std::size_t k) {
        if (k == at) cancel();
      });
      break;
  }
}

// What was handed out belongs to the caller, unless the operation was broken off. NotifyEnable hands its list
// out before it looks at the status, and breaks nothing off for that.
void Bench::Release(SYNC_RESULT result) {
  if (result == 0 || IsFamily(result, AS_RESULT_FAMILY_NOTIFY)) session_.ReleaseLists();
  session_.hierarchy = nullptr;
  session_.carriers = nullptr;
}

std::string Bench::Trace() const {
  std::string trace;
  for (const TransportCall& call : session_.transport.Calls()) trace += call.line + call.bytes + "\n";
  for (const std::string& line : session_.store.Lines()) trace += line + "\n";
  return trace;
}

std::string Bench::CheckResult(const Fault& fault, SYNC_RESULT result) {
  bool right = false;
  switch (fault.kind) {
    case FaultKind::object:
      right = result == AS_RESULT_OUT_OF_MEMORY;
      break;
    case FaultKind::allocation:
      // A decoder that can't keep a field leaves it out.
      right = result == AS_RESULT_OUT_OF_MEMORY || result == scenario_.expected;
      break;
    case FaultKind::transport: {
      const std::string line = session_.transport.Calls().back().line;
      const bool opens = line == "Open" || line == "Close";
      right = opens ? result == ScriptedTransport::kFailure || result == scenario_.expected
                    : result == (BeginsWith(line, "ReadResponseHead") ? AS_RESULT_FAMILY_HTTP
                                                                      : AS_RESULT_TRANSPORT_FAILED);
      break;
    }
    case FaultKind::status:
      right = result == ResultOfStatus(fault.value);
      break;
    case FaultKind::cut:
      right = result == AS_RESULT_TRANSPORT_FAILED || (scenario_.takesShortBodies && result == AS_RESULT_OK);
      break;
    case FaultKind::byte:
      right = MayComeFromAServer(result);
      break;
    default:
      // After the last check the command ends as it would have, and the cancel is the next one's.
      right = result == AS_RESULT_CANCELLED ||
              (result == scenario_.expected && session_.airSync->CancelRequested()) ||
              (result == scenario_.expected && scenario_.expected != AS_RESULT_OK);
      break;
  }
  return right ? std::string() : "it ended with " + InHex(result);
}

std::string Bench::CheckMemory(const char* when) const {
  if (scenario_.keepsMemory || FailingMemory::LiveBlocks() == 0) return {};
  return std::to_string(FailingMemory::LiveBlocks()) + " blocks are left " + when;
}

// A cancel that came too late for its command.
std::string Bench::TakeLateCancel() {
  if (!session_.airSync->CancelRequested()) return {};
  _SYNC_KEY key = {"0"};
  const SYNC_RESULT result = session_.airSync->FolderSync(key);
  return result == AS_RESULT_CANCELLED ? std::string() : "the cancel that stayed set gave " + InHex(result);
}

std::string Bench::RunUndisturbed() {
  Prepare();
  for (const std::string& answer : scenario_.answers) session_.transport.Answer(answer);
  const SYNC_RESULT result = scenario_.run(session_);
  const bool same = Trace() == undisturbed_;
  Release(result);
  if (result != scenario_.expected) return "the next command ended with " + InHex(result);
  if (!same) return "the next command is not as it was before";
  return CheckMemory("after the next command");
}

// Afterwards the session is connected again.
SYNC_RESULT Bench::RunFromTheStart(std::size_t failingNew, std::size_t& count) {
  Prepare();
  AirSync* const airSync = session_.airSync;
  airSync->Disconnect();
  airSync->Uninitialize();
  for (const std::string& answer : scenario_.answers) session_.transport.Answer(answer);
  const SERVER_INFO account = TestAccount();
  const auto initialize = [&] {
    return airSync->Initialize(account, "", &session_.transport, &session_.store, scenario_.encoding,
                               nullptr);
  };
  SYNC_RESULT result = AS_RESULT_OK;
  {
    const FailingNew failing(failingNew);
    result = initialize();
    if (result == AS_RESULT_OK) result = airSync->Connect();
    if (result == AS_RESULT_OK) result = scenario_.run(session_);
    count = failing.Count();
  }
  if (failingNew == 0) return result;
  airSync->Disconnect();
  airSync->Uninitialize();
  session_.hierarchy = nullptr;
  session_.carriers = nullptr;
  initialize();
  airSync->Connect();
  return result;
}

std::string Bench::TryObject(std::size_t k) {
  try {
    std::size_t count = 0;
    std::string problem = CheckResult({FaultKind::object, k}, RunFromTheStart(k, count));
    if (problem.empty() && FrameArmed()) problem = "the frame is armed after it";
    if (problem.empty()) problem = CheckMemory("after it");
    return problem.empty() ? RunUndisturbed() : problem;
  } catch (const std::bad_alloc&) {
    return "std::bad_alloc left the library";
  }
}

std::string Bench::Try(const Fault& fault) {
  if (fault.kind == FaultKind::object) return TryObject(fault.at);
  Prepare();
  FailingMemory::RefuseAbove(kMostMemory);
  std::vector<std::string> answers = scenario_.answers;
  Inject(fault, answers);
  for (const std::string& answer : answers) session_.transport.Answer(answer);
  const SYNC_RESULT result = scenario_.run(session_);
  std::string problem = CheckResult(fault, result);
  Release(result);
  session_.transport.OnCall(nullptr);
  session_.transport.RefuseHead(0, 0);
  FailingMemory::Reset();
  FailingMemory::OnAllocation(nullptr);
  if (problem.empty()) problem = CheckMemory("after it");
  if (problem.empty()) problem = TakeLateCancel();
  return problem.empty() ? RunUndisturbed() : problem;
}

}  // namespace torture
