// A machine with airsync on it and a server beside it; both are gone after the test.
#ifndef AIRSYNC_TESTS_INTEGRATION_FIXTURE_H
#define AIRSYNC_TESTS_INTEGRATION_FIXTURE_H

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "integration/Process.h"
#include "integration/Server.h"

namespace airsync::integration {

// What a run of airsync left.
struct Finished {
  int code = 0;
  std::string output;
  std::string errors;
  long peakKilobytes = 0;  // the most memory that one of its processes held

  nlohmann::json json() const { return nlohmann::json::parse(output); }
};

class AirsyncTest : public testing::Test {
 protected:
  AirsyncTest();
  ~AirsyncTest() override;

  /// Starts the server, in place of the one that ran, and writes a configuration for it.
  void serve(const std::vector<std::string>& switches = {"--contacts", "100"});
  Server& server() { return *server_; }

  /// One account named demo; `more` is added to its table.
  void configure(const std::string& url, const std::string& more = {});
  std::string url() const { return "http://127.0.0.1:" + std::to_string(server_->port()) + "/service"; }

  Finished run(const std::vector<std::string>& arguments, const std::string& input = {});
  std::unique_ptr<Process> start(const std::vector<std::string>& arguments);

  /// `airsync sync`, expected to end well.
  void sync();
  /// What `airsync --json status` tells of a folder, by its id.
  nlohmann::json folder(const std::string& id);
  /// Waits until so many items of the folder f9 are durable here.
  void awaitItems(std::size_t count);
  /// Adds a contact to f9 here, returns its number.
  long long addHere(const nlohmann::json& record);

  /// The contacts of a folder as this side has them, by their server ids; those without one by "#NUMBER".
  std::map<std::string, nlohmann::json> contactsHere(const std::string& folder = "f9");
  /// The records of a folder of any class, by their server ids.
  std::map<std::string, nlohmann::json> itemsHere(const std::string& folder);
  /// Expects that both sides hold the same, field by field.
  void expectSameOnBothSides(const std::string& folder = "f9");

  const std::filesystem::path& directory() const { return directory_; }
  /// The directory in which airsync runs; empty at first.
  std::filesystem::path work() const { return directory_ / "work"; }
  std::map<std::string, std::string>& environment() { return environment_; }
  void setUmask(mode_t mask) { umask_ = mask; }
  /// Whose process airsync is from now on; everything that is there becomes theirs. Root alone can do that.
  void become(uid_t user);
  /// How large a file of airsync's may become; 0: any size.
  void setLargestFile(long bytes) { largestFile_ = bytes; }
  /// Everything that airsync has written so far.
  const std::string& written() const { return written_; }

 private:
  Process::Start startOf(const std::vector<std::string>& arguments) const;

  std::filesystem::path directory_;
  mode_t umask_ = 022;
  uid_t user_ = 0;
  long largestFile_ = 0;
  std::map<std::string, std::string> environment_;
  std::unique_ptr<Server> server_;
  std::string written_;
};

}  // namespace airsync::integration

#endif
