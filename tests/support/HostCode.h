// Whether the host's code runs, called by the library: what it allocates is not the library's.
#ifndef TESTS_SUPPORT_HOST_CODE_H
#define TESTS_SUPPORT_HOST_CODE_H

namespace airsync_test {

class HostCode {
 public:
  HostCode() { ++depth; }
  ~HostCode() { --depth; }
  HostCode(const HostCode&) = delete;
  HostCode& operator=(const HostCode&) = delete;

  static bool Runs() { return depth > 0; }

 private:
  static inline thread_local int depth = 0;
};

}  // namespace airsync_test

#endif
