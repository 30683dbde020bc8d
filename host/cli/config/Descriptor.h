// A file descriptor that closes itself.
#ifndef AIRSYNC_CLI_CONFIG_DESCRIPTOR_H
#define AIRSYNC_CLI_CONFIG_DESCRIPTOR_H

#include <unistd.h>
#include <utility>

namespace airsync {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { close(); }

  bool valid() const { return number_ >= 0; }
  int number() const { return number_; }
  void close() {
    if (valid()) ::close(std::exchange(number_, -1));
  }

 private:
  int number_ = -1;
};

}  // namespace airsync

#endif
