// Numbers for new data files: the same from the same start on every machine.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace demoserver {

using Words = std::span<const char* const>;

// splitmix64: a handful of lines that give the same numbers everywhere.
class Random {
 public:
  explicit Random(std::uint64_t state) : state_(state) {}

  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  int below(int limit) { return static_cast<int>(next() % static_cast<std::uint64_t>(limit)); }
  bool chance(int percent) { return below(100) < percent; }
  std::string pick(Words words) {
    return words[static_cast<std::size_t>(below(static_cast<int>(words.size())))];
  }

 private:
  std::uint64_t state_;
};

}  // namespace demoserver
