// Faults on demand, so that tests can see how a client takes them.
//
// The plan picks requests by their command and their number; picked requests get all the faults that are set.
// Requests of the administration are never picked and never counted.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace demoserver {

struct Fault {
  int status = 0;                      // not 0: answer this HTTP status with no body, and do nothing else
  std::optional<std::size_t> cutBody;  // send only so many bytes of the body that the head announces
  int delayMs = 0;                     // wait before the answer, after the request was applied
  bool dropRequest = false;            // close the connection instead of handling the request
  bool dropAnswer = false;             // apply the request, then close the connection instead of answering
  bool closeAfter = false;             // answer, then close the connection that the answer promised to keep
  bool noCollection = false;           // answer a Sync with a document that holds no Collection
  std::string answerFile;  // answer with the bytes of this file as a document, and do nothing else
};

class FaultPlan {
 public:
  Fault fault;
  std::string command;  // pick only this command; any when it is empty
  int after = 0;        // let so many requests pass first
  int count = -1;       // then pick so many; all when it is negative

  // The faults of the next request, which is of this command. Counts it.
  Fault next(const std::string& requestCommand) {
    if (!command.empty() && command != requestCommand) return {};
    if (seen_ < after) {
      ++seen_;
      return {};
    }
    if (count >= 0 && picked_ >= count) return {};
    ++picked_;
    return fault;
  }
  // How many requests had the faults so far.
  int picked() const { return picked_; }

 private:
  int seen_ = 0;
  int picked_ = 0;
};

}  // namespace demoserver
