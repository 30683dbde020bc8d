// A directory that is gone when the test is.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace demoserver {

class Scratch {
 public:
  Scratch() {
    std::string pattern = std::filesystem::temp_directory_path() / "airsync-server-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no directory for " + pattern);
    directory_ = pattern;
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  std::string path(const std::string& name) const { return directory_ / name; }

 private:
  std::filesystem::path directory_;
};

}  // namespace demoserver
