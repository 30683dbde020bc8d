#include "integration/Fixture.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <stdlib.h>
#include <thread>
#include <unistd.h>

#include "formats/ContactJson.h"
#include "formats/ItemJson.h"
#include "store/Store.h"

namespace airsync::integration {

namespace {

std::filesystem::path makeDirectory() {
  std::string name = (std::filesystem::temp_directory_path() / "airsync-it-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
  return name;
}

// What arrives of an address: its first part between double quotes.
std::string firstPart(const std::string& address) {
  const std::size_t begin = std::min(address.find_first_not_of('"'), address.size());
  return address.substr(begin, address.find('"', begin) - begin);
}

// Both sides in one form: no empty fields, dates without their fraction of a second.
nlohmann::json normalized(const nlohmann::json& contact) {
  nlohmann::json result = nlohmann::json::object();
  for (const auto& [field, value] : contact.items()) {
    if (value.is_null() || (value.is_string() && value.get<std::string>().empty())) continue;
    if (value.is_array() && value.empty()) continue;
    result[field] = value;
    if (field == "Birthday" || field == "Anniversary") {
      std::string text = value.get<std::string>();
      const std::size_t fraction = text.find(".000Z");
      if (fraction != std::string::npos) text.erase(fraction, 4);
      result[field] = text;
    }
    if (field.rfind("Email", 0) == 0) result[field] = firstPart(value.get<std::string>());
  }
  // The server computes these for what it sends; they are not part of what is uploaded.
  result.erase("BodySize");
  result.erase("BodyTruncated");
  return result;
}

}  // namespace

AirsyncTest::AirsyncTest() : directory_(makeDirectory()) {
  environment_ = {{"HOME", directory_.string()},
                  {"PATH", "/usr/bin:/bin"},
                  {"LANG", "C.UTF-8"},
                  {"XDG_CONFIG_HOME", (directory_ / "config").string()},
                  {"XDG_STATE_HOME", (directory_ / "state").string()},
                  {"AIRSYNC_PASSWORD", "demo"}};
  std::filesystem::create_directories(directory_ / "config" / "airsync");
  std::filesystem::create_directories(work());
}

AirsyncTest::~AirsyncTest() {
  server_.reset();
  std::filesystem::remove_all(directory_);
}

void AirsyncTest::serve(const std::vector<std::string>& switches) {
  server_.reset();
  server_ = std::make_unique<Server>(directory_, switches);
  configure(url());
}

void AirsyncTest::configure(const std::string& url, const std::string& more) {
  writeFile(directory_ / "config" / "airsync" / "config.toml",
            "[account.demo]\nurl = \"" + url + "\"\nuser = \"demo\"\ndomain = \"DEMO\"\n" + more);
}

Process::Start AirsyncTest::startOf(const std::vector<std::string>& arguments) const {
  Process::Start start;
  start.command = {AIRSYNC_PROGRAM};
  start.command.insert(start.command.end(), arguments.begin(), arguments.end());
  start.environment = environment_;
  start.directory = directory_;
  start.work = work();
  start.umask = umask_;
  start.user = user_;
  start.largestFile = largestFile_;
  return start;
}

void AirsyncTest::become(uid_t user) {
  user_ = user;
  const auto give = [user](const std::filesystem::path& file) {
    if (::lchown(file.c_str(), user, user) != 0) throw std::runtime_error("lchown failed");
  };
  give(directory_);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(directory_)) give(entry.path());
}

std::unique_ptr<Process> AirsyncTest::start(const std::vector<std::string>& arguments) {
  return std::make_unique<Process>(startOf(arguments));
}

Finished AirsyncTest::run(const std::vector<std::string>& arguments, const std::string& input) {
  Process::Start start = startOf(arguments);
  start.input = input;
  Process process(start);
  Finished result;
  result.code = process.wait();
  result.output = process.output();
  result.errors = process.errors();
  result.peakKilobytes = process.peakKilobytes();
  written_ += result.output + result.errors;
  return result;
}

void AirsyncTest::sync() {
  const Finished result = run({"sync"});
  ASSERT_EQ(result.code, 0) << result.output << result.errors;
}

nlohmann::json AirsyncTest::folder(const std::string& id) {
  const Finished result = run({"--json", "status"});
  if (result.code != 0) throw std::runtime_error(result.errors);
  const nlohmann::json status = result.json();
  for (const auto& entry : status.at("accounts").at(0).at("folders")) {
    if (entry.at("id") == id) return entry;
  }
  return nullptr;
}

void AirsyncTest::awaitItems(std::size_t count) {
  while (true) {
    const nlohmann::json contacts = folder("f9");
    if (!contacts.is_null() && contacts.at("items") == count) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

long long AirsyncTest::addHere(const nlohmann::json& record) {
  const Finished result = run({"--json", "add", "f9", "-"}, record.dump());
  if (result.code != 0) throw std::runtime_error(result.errors);
  return result.json().at("number");
}

std::map<std::string, nlohmann::json> AirsyncTest::contactsHere(const std::string& folder) {
  const Store store(directory_ / "state" / "airsync" / "demo.db");
  std::map<std::string, nlohmann::json> contacts;
  store.listItems(store.findFolder(folder).number, [&](const ItemSummary& summary) {
    const std::string id = summary.serverId ? *summary.serverId : "#" + std::to_string(summary.number);
    contacts[id] = contactToJson(std::get<Contact>(store.item(summary.number).value));
    return true;
  });
  return contacts;
}

std::map<std::string, nlohmann::json> AirsyncTest::itemsHere(const std::string& folder) {
  const Store store(directory_ / "state" / "airsync" / "demo.db");
  std::map<std::string, nlohmann::json> items;
  store.listItems(store.findFolder(folder).number, [&](const ItemSummary& summary) {
    items[summary.serverId.value_or("")] = itemToJson(store.item(summary.number).value);
    return true;
  });
  return items;
}

void AirsyncTest::expectSameOnBothSides(const std::string& folder) {
  const auto here = contactsHere(folder);
  const auto there = server_->contacts(folder);
  EXPECT_EQ(here.size(), there.size());
  for (const auto& [id, contact] : there) {
    const auto found = here.find(id);
    if (found == here.end()) {
      ADD_FAILURE() << "missing here: " << id;
      continue;
    }
    EXPECT_EQ(normalized(found->second), normalized(contact)) << id;
  }
}

}  // namespace airsync::integration
