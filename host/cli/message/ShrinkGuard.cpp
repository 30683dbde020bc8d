#include "cli/message/ShrinkGuard.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <fmt/core.h>
#include <unistd.h>

#include "cli/ExitCode.h"
#include "cli/output/Displayable.h"

namespace airsync {

namespace {

// What the handler needs, made ready before: it may do very little itself.
std::atomic<std::uintptr_t> mappingBegin{0};
std::atomic<std::uintptr_t> mappingEnd{0};
std::atomic<std::size_t> sentenceSize{0};
std::array<char, 1024> sentence{};

extern "C" void onBusError(int, siginfo_t* info, void*) {
  const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
  if (address < mappingBegin.load() || address >= mappingEnd.load()) {
    // Not ours: it happens again as soon as we return, and ends the process as it would have done.
    static_cast<void>(std::signal(SIGBUS, SIG_DFL));
    return;
  }
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, sentence.data(), sentenceSize.load());
  ::_exit(static_cast<int>(ExitCode::kNeedsPerson));
}

}  // namespace

ShrinkGuard::ShrinkGuard(const void* mapping, std::size_t size, const std::string& name) {
  constexpr std::size_t kNameColumns = 200;
  const std::string text = fmt::format(
      "airsync: error: sending {}: the file became shorter meanwhile; the message did not go out\n"
      "airsync:   Let whatever writes it come to its end, then send it again.\n",
      displayable(name, kNameColumns));
  const std::size_t count = std::min(text.size(), sentence.size());
  std::memcpy(sentence.data(), text.data(), count);
  sentenceSize = count;
  mappingBegin = reinterpret_cast<std::uintptr_t>(mapping);
  mappingEnd = reinterpret_cast<std::uintptr_t>(mapping) + size;
  struct sigaction action = {};
  action.sa_sigaction = onBusError;
  action.sa_flags = SA_SIGINFO;
  ::sigemptyset(&action.sa_mask);
  ::sigaction(SIGBUS, &action, &before_);
}

ShrinkGuard::~ShrinkGuard() {
  ::sigaction(SIGBUS, &before_, nullptr);
  mappingBegin = 0;
  mappingEnd = 0;
}

}  // namespace airsync
