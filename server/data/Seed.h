// The folders and items of a new data file. The same seed gives the same data on every machine; the times of
// events and mails lie around the state's clock, so they are the same when that stands still.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "data/State.h"

namespace demoserver {

struct SeedOptions {
  int contacts = 100;  // all of them in the Contacts folder
  int events = 0;      // in the calendars
  int mails = 0;       // in the folders of mails
  int folders = 0;     // user folders beyond the usual ones
  std::uint64_t seed = 1;
};

inline constexpr char kContactsFolder[] = "f9";

// Fills the state, once: false if it was filled before, whatever the options say now.
bool seed(State& state, const SeedOptions& options);

// The contact of this number: one of the many that one seed can give.
nlohmann::json seedContact(std::uint64_t seed, int number);

}  // namespace demoserver
