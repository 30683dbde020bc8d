// What the tests of airsync share: directories that go away, variables that come back, errors as texts.
#ifndef AIRSYNC_TESTS_UNIT_CLI_SUPPORT_H
#define AIRSYNC_TESTS_UNIT_CLI_SUPPORT_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/stat.h>

#include "cli/ExitError.h"
#include "cli/output/Output.h"

namespace airsync::test {

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "airsync-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path_ = name;
  }
  ~TemporaryDirectory() { std::filesystem::remove_all(path_); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }

  std::string write(const std::string& name, const std::string& text, mode_t mode = 0600) const {
    const std::string file = (path_ / name).string();
    std::ofstream(file, std::ios::binary) << text;
    ::chmod(file.c_str(), mode);
    return file;
  }

 private:
  std::filesystem::path path_;
};

class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    set(value);
  }
  ~EnvironmentVariable() { set(before_ ? before_->c_str() : nullptr); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
  void set(const char* value) const {
    if (value == nullptr) {
      ::unsetenv(name_);
    } else {
      ::setenv(name_, value, 1);
    }
  }

  const char* name_;
  std::optional<std::string> before_;
};

// What a call told when it failed: "CODE sentence"; "no error" when it did not.
template <typename Call>
std::string errorOf(const Call& call) {
  try {
    call();
  } catch (const Error& error) {
    return std::to_string(static_cast<int>(exitCodeOf(error))) + " " + sentenceOf(error);
  }
  return "no error";
}

template <typename Call>
std::string adviceOf(const Call& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.advice();
  }
  return "no error";
}

}  // namespace airsync::test

#endif
