// The people of new data files.
#pragma once

#include <string>

#include "data/SeedRandom.h"

namespace demoserver {

// A people's names and places, in its own script, and the same names as an address spells them.
struct Culture {
  const char* country;
  Words first;
  Words last;
  Words cities;
  Words streets;
  Words mail;                // parts of addresses
  const char* prefix;        // of telephone numbers
  bool hasReadings = false;  // whether names come with their readings in kana
};

const Culture& pickCulture(Random& random);

struct Person {
  std::string name;
  std::string address;

  // As a head line of a message names them.
  std::string mailbox() const { return "\"" + name + "\" <" + address + ">"; }
};

// Somebody whose name holds no double quotes.
Person pickPerson(Random& random);

}  // namespace demoserver
