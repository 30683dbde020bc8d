// What time it is for the server.
#pragma once

#include <chrono>
#include <optional>

#include "support/Dates.h"

namespace demoserver {

struct Clock {
  std::optional<Moment> fixed;  // stands still at this moment when it is set

  Moment now() const {
    return fixed ? *fixed : std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  }
};

}  // namespace demoserver
