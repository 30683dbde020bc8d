#include "cli/output/FailureList.h"

#include <fmt/core.h>

#include "cli/output/Displayable.h"
#include "cli/output/Words.h"

namespace airsync {

namespace {

constexpr std::size_t kNameColumns = 40;

// As a shell takes it.
std::string quoted(const std::string& text) {
  std::string quotedText = "'";
  for (const char c : text) quotedText += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quotedText + "'";
}

}  // namespace

std::vector<std::string> failureLines(const std::vector<Failure>& failures, const std::string& account) {
  std::vector<std::string> lines;
  const std::string option = account.empty() ? "" : "--account " + account + " ";
  for (const Failure& failure : failures) {
    const std::string what = failure.change.kind == ChangeKind::add ? "forget the item" : "give it up";
    const std::string folder = displayable(quoted(failure.folderName));
    lines.push_back(fmt::format("{}, item {} ({}): {} {}: {}", displayable(failure.folderName), failure.item,
                                displayable(failure.name, kNameColumns), nameOf(failure.change.kind),
                                nameOf(failure.change.state), reasonOf(failure.change)));
    const std::string retry =
        isTooLarge(failure.change)
            ? fmt::format("  it was not sent; to make it smaller: airsync {}change {} {} RECORD", option,
                          folder, failure.item)
            : fmt::format("  to send it {}: airsync {}retry {} {}",
                          failure.copyOf ? "as an item of its own" : "again", option, folder, failure.item);
    lines.push_back(
        fmt::format("{}; to {}: airsync {}discard {} {}", retry, what, option, folder, failure.item));
  }
  return lines;
}

}  // namespace airsync
