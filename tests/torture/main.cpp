// Breaks every conversation at every place in every way, one at a time, and prints what came of it.
//
//   airsync_torture                                   everything
//   airsync_torture --stride 7                        every seventh fault of each scenario
//   airsync_torture --scenario sync-mail-add          one scenario
//   airsync_torture --scenario sync-mail-add --fault byte --at 310 --value c3      one fault
//   airsync_torture --list                            the names of the scenarios
//
// Keeps S3, S4.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "torture/Campaign.h"

namespace {

using torture::Campaign;
using torture::Scenario;

struct Totals {
  std::size_t events = 0;
  std::size_t faults = 0;
  std::size_t survived = 0;
  std::size_t stopped = 0;
};

void PrintRow(const char* name, const Totals& row) {
  std::printf("%-32s %9zu %9zu %9zu %9zu\n", name, row.events, row.faults, row.survived, row.stopped);
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  CLI::App app("Fails everything that can fail, one thing at a time.");
  std::string only;
  bool list = false;
  torture::Selection selection;
  app.add_option("--scenario", only, "This scenario only");
  app.add_option("--fault", selection.kind, "Faults of this kind only");
  app.add_option("--at", selection.at, "Only at this event, counted from 1");
  app.add_option("--value", selection.value, "Only this byte or status, in hexadecimal");
  app.add_option("--stride", selection.stride, "Every n-th fault")->check(CLI::PositiveNumber);
  app.add_flag("--list", list, "The names of the scenarios");
  CLI11_PARSE(app, argc, argv);

  Totals totals;
  std::size_t scenarios = 0;
  if (!list) std::printf("%-32s %9s %9s %9s %9s\n", "scenario", "events", "faults", "survived", "asserted");
  for (const Scenario& scenario : torture::Scenarios()) {
    if (!only.empty() && scenario.name != only) continue;
    ++scenarios;
    if (list) {
      std::puts(scenario.name.c_str());
      continue;
    }
    Campaign campaign(scenario, selection);
    campaign.Run();
    const Totals row = {campaign.Events(), campaign.Faults(), campaign.Survived(), campaign.Stopped()};
    PrintRow(scenario.name.c_str(), row);
    for (const std::string& failure : campaign.Failures()) std::printf("  FAILED %s\n", failure.c_str());
    std::fflush(stdout);
    totals.events += row.events;
    totals.faults += row.faults;
    totals.survived += row.survived;
    totals.stopped += row.stopped;
  }
  if (list) return 0;
  PrintRow("all", totals);
  if (scenarios == 0 || totals.faults == 0) {
    std::puts("Nothing was tried: see --list for the scenarios.");
    return 2;
  }
  return totals.survived + totals.stopped == totals.faults ? 0 : 1;
}
