// What all connections together may take: how many there are, and the bytes of requests and answers that
// they hold. A connection counts as long as its share lives.
#pragma once

#include <cstddef>
#include <functional>

namespace demoserver {

struct LoadLimits {
  std::size_t connections = 128;
  std::size_t bytes = std::size_t{256} * 1024 * 1024;
};

class Load {
 public:
  explicit Load(const LoadLimits& limits) : limits_(limits) {}

  bool takesConnections() const { return connections_ < limits_.connections; }
  // Whether there are as many bytes as there may be, or more.
  bool isFull() const { return bytes_ >= limits_.bytes; }

  // Called whenever a connection has ended.
  std::function<void()> released;

 private:
  friend class LoadShare;

  LoadLimits limits_;
  std::size_t connections_ = 0;
  std::size_t bytes_ = 0;
};

// What one connection takes of it.
class LoadShare {
 public:
  explicit LoadShare(Load& load) : load_(load) { ++load_.connections_; }
  ~LoadShare() {
    hold(0);
    --load_.connections_;
    if (load_.released) load_.released();
  }
  LoadShare(const LoadShare&) = delete;
  LoadShare& operator=(const LoadShare&) = delete;

  // It holds so many bytes now.
  void hold(std::size_t bytes) {
    load_.bytes_ = load_.bytes_ - bytes_ + bytes;
    bytes_ = bytes;
  }

 private:
  Load& load_;
  std::size_t bytes_ = 0;
};

}  // namespace demoserver
