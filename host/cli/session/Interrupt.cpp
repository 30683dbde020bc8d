#include "cli/session/Interrupt.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <unistd.h>

#include "api/AirSync.h"
#include "cli/ExitCode.h"

namespace airsync {

namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

std::atomic<bool> interrupted{false};
std::atomic<bool> askedDirectly{false};
std::atomic<pid_t> child{0};
std::atomic<pid_t> parent{0};
std::atomic<AIRSYNC_STACK::AirSync*> running{nullptr};
static_assert(std::atomic<bool>::is_always_lock_free);
static_assert(std::atomic<pid_t>::is_always_lock_free);
static_assert(std::atomic<AIRSYNC_STACK::AirSync*>::is_always_lock_free);

extern "C" void onSignal(int signal, siginfo_t* info, void*) {
  const int before = errno;
  const pid_t above = parent.load();
  const bool passedOn = above != 0 && info->si_code == SI_USER && info->si_pid == above;
  // Somebody who asks twice does not want to wait. The store is safe against that, as against a kill.
  if (!passedOn && askedDirectly.exchange(true)) {
    if (child.load() != 0) ::kill(child.load(), SIGKILL);
    ::_exit(static_cast<int>(ExitCode::kInterrupted));
  }
  interrupted.store(true);
  if (child.load() != 0) ::kill(child.load(), signal);
  if (AIRSYNC_STACK::AirSync* airSync = running.load()) airSync->CancelSync();
  errno = before;
}

void handle(int signal) {
  struct sigaction action = {};
  ::sigaction(signal, nullptr, &action);
  if (action.sa_handler == SIG_IGN) return;  // as under nohup
  action = {};
  action.sa_sigaction = onSignal;
  action.sa_flags = SA_SIGINFO;
  ::sigemptyset(&action.sa_mask);
  for (const int other : kSignals) ::sigaddset(&action.sa_mask, other);
  ::sigaction(signal, &action, nullptr);  // without SA_RESTART: blocking calls are to end
}

}  // namespace

void Interrupt::install() {
  for (const int signal : kSignals) handle(signal);
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));  // the write fails, as on a full disk
}

bool Interrupt::requested() { return interrupted.load(); }

void Interrupt::passOnTo(pid_t process) { child.store(process); }
void Interrupt::forgetChild() { child.store(0); }

void Interrupt::becomeChildOf(pid_t process) {
  child.store(0);
  parent.store(process);
}

Interrupt::Scope::Scope(AIRSYNC_STACK::AirSync& airSync) {
  running.store(&airSync);
  // A signal that came a moment before found nobody to cancel.
  if (requested()) airSync.CancelSync();
}

Interrupt::Scope::~Scope() { running.store(nullptr); }

Interrupt::Hold::Hold() {
  sigset_t held;
  ::sigemptyset(&held);
  for (const int signal : kSignals) ::sigaddset(&held, signal);
  ::pthread_sigmask(SIG_BLOCK, &held, &before_);
}

Interrupt::Hold::~Hold() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

}  // namespace airsync
