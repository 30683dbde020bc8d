// Ctrl-C and its relatives: the first one asks the running command to end, the second one ends the process.
//
// Where the command runs in a child, a signal may reach either process or both: a terminal tells both, a
// person who names a process tells the parent. The parent passes its first one on; what it passes on is not a
// second one for the child, which may have got the first itself.
#ifndef AIRSYNC_CLI_SESSION_INTERRUPT_H
#define AIRSYNC_CLI_SESSION_INTERRUPT_H

#include <csignal>
#include <sys/types.h>

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

  /// Signals go to this child, too, until it is forgotten: the first one as it came, the second one ends
  /// both.
  static void passOnTo(pid_t child);
  static void forgetChild();
  /// In the child, before it does anything.
  static void becomeChildOf(pid_t parent);

  /// While it exists, a signal cancels the running command of `airSync`: only what a signal handler may do
  /// is done there (a relaxed store, and the transport's Cancel).
  class Scope {
   public:
    explicit Scope(AIRSYNC_STACK::AirSync& airSync);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
  };

  /// While it exists, signals wait.
  class Hold {
   public:
    Hold();
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    sigset_t before_;
  };
};

}  // namespace airsync

#endif
