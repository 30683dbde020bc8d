#include "converge/Machine.h"

#include <stdexcept>
#include <utility>

#include "formats/ItemJson.h"

namespace airsync::converge {

Machine::Machine(std::filesystem::path directory)
    : directory_(std::move(directory)),
      server_(
          std::make_unique<integration::Server>(directory_, std::vector<std::string>{"--contacts", "0"})) {
  std::filesystem::create_directories(directory_ / "config" / "airsync");
  integration::writeFile(directory_ / "config" / "airsync" / "config.toml",
                         "[account.demo]\nurl = \"http://127.0.0.1:" + std::to_string(server_->port()) +
                             "/service\"\nuser = \"demo\"\ndomain = \"DEMO\"\n");
}

void Machine::restartServer() {
  const int port = server_->port();
  server_.reset();
  server_ = std::make_unique<integration::Server>(directory_, std::vector<std::string>{}, port);
}

std::unique_ptr<integration::Process> Machine::start(long largestFile) const {
  integration::Process::Start start;
  start.command = {AIRSYNC_PROGRAM, "sync", "--allow-deletes"};
  start.environment = {{"HOME", directory_.string()},
                       {"PATH", "/usr/bin:/bin"},
                       {"LANG", "C.UTF-8"},
                       {"XDG_CONFIG_HOME", (directory_ / "config").string()},
                       {"XDG_STATE_HOME", (directory_ / "state").string()},
                       {"AIRSYNC_PASSWORD", "demo"}};
  start.directory = directory_;
  start.ownGroup = true;
  start.largestFile = largestFile;
  return std::make_unique<integration::Process>(start);
}

void Machine::sync() const {
  const auto process = start();
  const int code = process->wait();
  if (code == 0) return;
  throw std::runtime_error("the clean run ended with " + std::to_string(code) + ":\n" + process->errors());
}

Records Machine::here(const char* folder) const {
  const Store store(storeFile());
  Records records;
  store.listItems(store.findFolder(folder).number, [&](const ItemSummary& summary) {
    const std::string id = summary.serverId.value_or("#" + std::to_string(summary.number));
    records[id] = itemToJson(store.item(summary.number).value);
    return true;
  });
  return records;
}

Json normalized(const Json& record) {
  if (record.is_array()) {
    Json entries = Json::array();
    for (const Json& entry : record) entries.push_back(normalized(entry));
    return entries;
  }
  if (!record.is_object()) return record;
  Json result = Json::object();
  for (const auto& [name, value] : record.items()) {
    if (value.is_null() || value == "" || value == Json::array()) continue;
    if (name == "BodySize" || name == "BodyTruncated") continue;
    result[name] = normalized(value);
  }
  return result;
}

}  // namespace airsync::converge
