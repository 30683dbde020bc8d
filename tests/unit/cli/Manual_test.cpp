// The manual page and the program's help tell of the same commands and options.
#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "cli/ExitCode.h"
#include "cli/Options.h"

namespace airsync {
namespace {

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string manual() {
  std::ifstream file(AIRSYNC_MANUAL);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The lines of one section.
std::vector<std::string> section(const std::string& title) {
  std::vector<std::string> found;
  bool within = false;
  for (const std::string& line : linesOf(manual())) {
    if (line.starts_with(".Sh ")) within = line == ".Sh " + title;
    if (within) found.push_back(line);
  }
  return found;
}

// The entries of the list of commands: ".It Cm folder create Ar NAME ...".
std::vector<std::string> entries() {
  std::vector<std::string> found;
  for (const std::string& line : section("COMMANDS")) {
    if (line.starts_with(".It Cm ")) found.push_back(line.substr(7));
  }
  return found;
}

std::string nameOf(const std::string& entry) {
  std::string name;
  std::istringstream words(entry);
  for (std::string word; words >> word && std::islower(static_cast<unsigned char>(word[0])) != 0;) {
    name += (name.empty() ? "" : " ") + word;
  }
  return name;
}

std::set<std::string> longOptions(const std::string& help) {
  std::set<std::string> found;
  const std::regex option("--([a-z][a-z-]+)");
  for (std::sregex_iterator match(help.begin(), help.end(), option), end; match != end; ++match) {
    if ((*match)[1] != "help") found.insert((*match)[1]);
  }
  return found;
}

std::set<std::string> flagsOf(const std::string& entry) {
  std::set<std::string> found;
  const std::regex flag("Fl -([a-z-]+)");
  for (std::sregex_iterator match(entry.begin(), entry.end(), flag), end; match != end; ++match) {
    found.insert((*match)[1]);
  }
  return found;
}

std::vector<std::string> wordsOf(const std::string& command) {
  std::vector<std::string> words;
  std::istringstream stream(command);
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

TEST(Manual, TellsOfTheCommandsOfTheHelpInTheirOrderAndOfNoOthers) {
  std::vector<std::string> told;
  for (const std::string& entry : entries()) told.push_back(nameOf(entry));
  EXPECT_EQ(told, commandNames());
}

TEST(Manual, TellsOfEachCommandsOptionsAndOfNoOthers) {
  for (const std::string& entry : entries()) {
    std::vector<std::string> arguments = wordsOf(nameOf(entry));
    arguments.emplace_back("--help");
    EXPECT_EQ(flagsOf(entry), longOptions(parseOptions(arguments).text)) << entry;
  }
}

TEST(Manual, TellsOfTheOptionsOfTheProgram) {
  const std::string text = manual();
  for (const std::string& option : longOptions(parseOptions({"--help"}).text)) {
    EXPECT_THAT(text, testing::HasSubstr("-" + option)) << option;
  }
}

TEST(Manual, TellsOfEachExitCode) {
  std::string text;
  for (const std::string& line : section("EXIT STATUS")) text += line + "\n";
  for (const ExitCodeText& code : kExitCodes) {
    EXPECT_THAT(text, testing::HasSubstr(".It " + std::to_string(static_cast<int>(code.code)) + " Pq " +
                                         std::string(code.name)));
  }
}

}  // namespace
}  // namespace airsync
