// Texts of new data files, in several scripts and with everything that needs care in markup.
#pragma once

#include <string>

#include "data/SeedRandom.h"

namespace demoserver {

std::string pickSubject(Random& random);
std::string pickPlace(Random& random);
std::string pickCategory(Random& random);
// So many sentences.
std::string someText(Random& random, int sentences);
// A text that is longer than the limit of this Truncation, 1 to 7; most of its characters have several bytes.
std::string longText(Random& random, int truncation);

}  // namespace demoserver
