#include "cli/process/Assertion.h"

#include <cstdio>
#include <cstdlib>
#include <fmt/core.h>

namespace airsync {

namespace {

FlightRecord* recorded = nullptr;

}  // namespace

void recordAssertions(FlightRecord& record) { recorded = &record; }

}  // namespace airsync

// The function that assert() calls. A program's own one goes before that of the C library, for the libraries
// that the program uses, too.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the C library's name
extern "C" [[noreturn]] void __assert_fail(const char* expression, const char* file, unsigned int line,
                                           const char* function) noexcept {
  if (airsync::FlightRecord* record = airsync::recorded) {
    record->assertion.set(expression);
    record->assertionFile.set(file);
    record->assertionLine = line;
  } else {
    fmt::print(stderr, "{}:{}: {}: Assertion `{}' failed.\n", file, line, function == nullptr ? "" : function,
               expression);
  }
  std::abort();
}
