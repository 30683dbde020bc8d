// What goes wrong while airsync synchronises.
#ifndef AIRSYNC_TESTS_CONVERGE_DISTURBANCE_H
#define AIRSYNC_TESTS_CONVERGE_DISTURBANCE_H

#include <array>
#include <chrono>
#include <string>

#include "converge/Machine.h"
#include "converge/Random.h"

namespace airsync::converge {

enum class Disturbance { parentKilled, childKilled, groupKilled, serverKilled, diskFull, locked };

struct DisturbanceRow {
  Disturbance kind;
  const char* name;
};

inline constexpr std::array<DisturbanceRow, 6> kDisturbances = {{
    {Disturbance::parentKilled, "airsync killed"},
    {Disturbance::childKilled, "its child killed"},
    {Disturbance::groupKilled, "its process group killed"},
    {Disturbance::serverKilled, "server killed"},
    {Disturbance::diskFull, "disk full"},
    {Disturbance::locked, "store locked"},
}};

struct Disturbed {
  int code = 0;              // as Process::wait tells it
  bool inTheMiddle = false;  // it struck while airsync ran
};

/// Runs airsync once and disturbs it at a moment within `usual`, the time that a run takes.
Disturbed disturb(Machine& machine, Disturbance kind, std::chrono::milliseconds usual, Random& random);

/// Whether a disk can really be full here: that takes the right to mount. Otherwise files may not grow.
bool canMount();

}  // namespace airsync::converge

#endif
