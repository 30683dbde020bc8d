// The demo server as a test drives it: started with its switches, looked at and changed through its
// administration.
#ifndef AIRSYNC_TESTS_INTEGRATION_SERVER_H
#define AIRSYNC_TESTS_INTEGRATION_SERVER_H

#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "integration/Process.h"

namespace airsync::integration {

class Server {
 public:
  /// Starts on a free port, or on this one; the data file in `directory` survives the object.
  Server(const std::filesystem::path& directory, const std::vector<std::string>& switches, int port = 0);

  int port() const { return port_; }
  const Process& process() const { return *process_; }

  /// The password of a server that was told of another than "demo".
  void usePassword(const std::string& password);

  /// Records of a folder by the ids of their items.
  std::map<std::string, nlohmann::json> items(const std::string& folder);
  std::map<std::string, nlohmann::json> contacts(const std::string& folder) { return items(folder); }
  /// Changes by the server. add returns the id.
  std::string add(const std::string& folder, const nlohmann::json& record);
  void replace(const std::string& folder, const std::string& id, const nlohmann::json& record);
  void remove(const std::string& folder, const std::string& id);
  void removeFolder(const std::string& folder);
  /// What devices have set up for notifications.
  nlohmann::json devices();
  /// Switches a habit on or off, for all that comes.
  void setHabit(const std::string& name, bool on = true);
  /// A plan of faults, from the next request on: {"command": "Sync", "after": 2, "count": 1,
  /// "closeBeforeAnswer": true} loses the answer to the third Sync. An empty object ends all faults.
  void planFaults(const nlohmann::json& plan);
  /// How many requests had the faults of the plan so far.
  int pickedRequests();
  /// Lets the server forget the folder's key, for every device.
  void forgetKey(const std::string& folder);
  /// The content of an attachment.
  std::string attachment(const std::string& handle);

  void stop();
  /// Ends it at once, whatever it is doing.
  void kill();

 private:
  std::string ask(const std::string& method, const std::string& target, const std::string& body);
  nlohmann::json request(const std::string& method, const std::string& target, const std::string& body = {});

  std::unique_ptr<Process> process_;
  int port_ = 0;
  std::string password_ = "demo";
};

}  // namespace airsync::integration

#endif
