// Numbers that are the same for the same seed and run, wherever they are drawn.
#ifndef AIRSYNC_TESTS_CONVERGE_RANDOM_H
#define AIRSYNC_TESTS_CONVERGE_RANDOM_H

#include <cstdint>
#include <random>
#include <string>

namespace airsync::converge {

class Random {
 public:
  Random(std::uint64_t seed, std::uint64_t run) {
    std::seed_seq sequence{seed & 0xffffffff, seed >> 32, run};
    engine_.seed(sequence);
  }

  /// From 0 to `limit` - 1.
  std::size_t below(std::size_t limit) { return static_cast<std::size_t>(engine_() % limit); }
  std::size_t between(std::size_t least, std::size_t most) { return least + below(most - least + 1); }
  bool chance(std::size_t percent) { return below(100) < percent; }

  std::string text(std::size_t length) {
    std::string text;
    while (text.size() < length) text += static_cast<char>('a' + below(26));
    return text;
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace airsync::converge

#endif
