#include "protocol/Habits.h"

#include <algorithm>

namespace demoserver {

bool setHabit(Habits& habits, std::string_view name, bool on) {
  const auto* const found =
      std::find_if(kHabits.begin(), kHabits.end(), [&](const Habit& each) { return each.name == name; });
  if (found == kHabits.end()) return false;
  if (on && found->choice != Choice::None)
    for (const Habit& each : kHabits)
      if (each.choice == found->choice) habits.*each.field = false;
  habits.*found->field = on;
  return true;
}

}  // namespace demoserver
