// A program under test: started with an environment of its own, its output kept in files.
#ifndef AIRSYNC_TESTS_INTEGRATION_PROCESS_H
#define AIRSYNC_TESTS_INTEGRATION_PROCESS_H

#include <filesystem>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace airsync::integration {

class Process {
 public:
  struct Start {
    std::vector<std::string> command;
    std::map<std::string, std::string> environment;  // the whole of it
    std::filesystem::path directory;                 // where the output files go
    std::filesystem::path work;                      // where it runs; empty: where the test does
    std::string input;
    mode_t umask = 022;
    bool ownGroup = false;  // it leads a process group of its own
    uid_t user = 0;         // whose process it is; 0: the one of the test
    long largestFile = 0;   // bytes that a file of its may grow to; 0: any number
  };

  explicit Process(const Start& start);
  /// Kills and awaits a program that still runs.
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void signal(int number) const;
  /// The processes that it has started and that still run.
  std::vector<pid_t> children() const;
  /// The exit status; the negative signal number when a signal ended it.
  int wait();
  bool running();
  pid_t pid() const { return pid_; }
  /// The most memory that it, or one of its children, held; after wait().
  long peakKilobytes() const { return peak_; }

  std::string output() const;
  std::string errors() const;

 private:
  std::string prefix_;
  pid_t pid_ = -1;
  bool ended_ = false;
  int status_ = 0;
  long peak_ = 0;
};

std::string readFile(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, const std::string& text);

}  // namespace airsync::integration

#endif
