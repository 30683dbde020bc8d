#include "cli/session/Interrupt.h"

#include <atomic>
#include <csignal>
#include <unistd.h>

#include "api/AirSync.h"
#include "cli/ExitCode.h"

namespace airsync {

namespace {

std::atomic<bool> interrupted{false};
std::atomic<AIRSYNC_STACK::AirSync*> running{nullptr};
static_assert(std::atomic<bool>::is_always_lock_free);
static_assert(std::atomic<AIRSYNC_STACK::AirSync*>::is_always_lock_free);

extern "C" void onSignal(int) {
  // Somebody who asks twice does not want to wait. The store is safe against that, as against a kill.
  if (interrupted.exchange(true)) ::_exit(static_cast<int>(ExitCode::kInterrupted));
  if (AIRSYNC_STACK::AirSync* airSync = running.load()) airSync->CancelSync();
}

void handle(int signal) {
  struct sigaction action = {};
  ::sigaction(signal, nullptr, &action);
  if (action.sa_handler == SIG_IGN) return;  // as under nohup
  action = {};
  action.sa_handler = onSignal;
  ::sigemptyset(&action.sa_mask);
  ::sigaction(signal, &action, nullptr);  // without SA_RESTART: blocking calls are to end
}

}  // namespace

void Interrupt::install() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) handle(signal);
  std::signal(SIGPIPE, SIG_IGN);
}

bool Interrupt::requested() { return interrupted.load(); }

Interrupt::Scope::Scope(AIRSYNC_STACK::AirSync& airSync) {
  running.store(&airSync);
  // A signal that came a moment before found nobody to cancel.
  if (requested()) airSync.CancelSync();
}

Interrupt::Scope::~Scope() { running.store(nullptr); }

}  // namespace airsync
