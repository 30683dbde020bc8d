// Ctrl-C and its relatives: the first one asks the running command to end, the second one ends the process.
#ifndef AIRSYNC_CLI_SESSION_INTERRUPT_H
#define AIRSYNC_CLI_SESSION_INTERRUPT_H

namespace AIRSYNC_STACK {
class AirSync;
}

namespace airsync {

class Interrupt {
 public:
  /// Takes over SIGINT, SIGTERM and SIGHUP (unless they are ignored), and ignores SIGPIPE.
  static void install();

  /// Whether somebody asked us to stop.
  static bool requested();

  /// While it exists, a signal cancels the running command of `airSync`: only what a signal handler may do
  /// is done there (a relaxed store, and the transport's Cancel).
  class Scope {
   public:
    explicit Scope(AIRSYNC_STACK::AirSync& airSync);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
  };
};

}  // namespace airsync

#endif
