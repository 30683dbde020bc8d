#include "cli/config/Config.h"

#include <algorithm>
#include <fmt/core.h>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "api/CalendarFields.h"
#include "api/ContactFields.h"
#include "api/Records.h"
#include "cli/ExitError.h"
#include "cli/config/ConfigTable.h"
#include "cli/output/Displayable.h"

namespace airsync {

namespace {

using AIRSYNC_STACK::SERVER_INFO;

// What a text field of so many bytes holds beside its terminator.
constexpr std::size_t room(std::size_t field) { return field - 1; }

constexpr std::size_t kLongestPath = 4096;
constexpr int kLongestTimeout = 24 * 60 * 60;

bool isAccountCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_' ||
         c == '.';
}

// The name is also that of the account's files.
void checkAccountName(const std::string& name, const ConfigTable& table) {
  constexpr std::size_t kLongest = 64;
  const bool fits = !name.empty() && name.size() <= kLongest && name.front() != '.' && name.front() != '-' &&
                    std::all_of(name.begin(), name.end(), isAccountCharacter);
  if (!fits) {
    table.fail("",
               "an account's name has 1 to 64 letters, digits, '-', '_' and '.', "
               "and begins with a letter, a digit or '_'");
  }
}

// The library writes these into the request line as they stand.
void checkQueryText(const char* key, const std::string& value, const ConfigTable& table) {
  if (value.find_first_of(" &#") != std::string::npos) table.fail(key, "must not contain ' ', '&' or '#'");
}

// The credentials end the user name at the first colon.
void checkLoginText(const char* key, const std::string& value, const ConfigTable& table) {
  if (value.find(':') != std::string::npos) table.fail(key, "must not contain ':'");
}

template <typename Table>
const char* elementIn(const Table& fields, const std::string& name) {
  for (const auto& field : fields) {
    if (name == field.name) return field.tag;
  }
  return nullptr;
}

// The element of a field of a class's items; null where they have no such field.
const char* elementOf(const std::string& name, AIRSYNC_STACK::DATATYPE dataType) {
  if (dataType == AIRSYNC_STACK::DATATYPE_CONTACTS) {
    return elementIn(AIRSYNC_STACK::AS_CONTACT_FIELDS, name);
  }
  if (dataType != AIRSYNC_STACK::DATATYPE_CALENDAR) return nullptr;
  for (const char* part : {"Recurrence", "Exceptions"}) {
    if (name == part) return part;
  }
  return elementIn(AIRSYNC_STACK::AS_CALENDAR_FIELDS, name);
}

void checkFieldName(const std::string& name, const ConfigTable& table) {
  for (const auto dataType : {AIRSYNC_STACK::DATATYPE_CONTACTS, AIRSYNC_STACK::DATATYPE_CALENDAR}) {
    if (elementOf(name, dataType) != nullptr) return;
  }
  table.fail("supported", fmt::format("contacts and events have no field \"{}\"", displayable(name)),
             "the fields are those that `airsync show` prints; see airsync(1)");
}

struct ConflictWord {
  std::string_view word;
  ConflictRule rule;
};
constexpr ConflictWord kConflictWords[] = {
    {"keep-both", ConflictRule::keepBoth},
    {"server", ConflictRule::server},
    {"local", ConflictRule::local},
};

void readConflictRule(ConfigTable& table, ConflictRule& rule) {
  constexpr std::size_t kLongestWord = 64;
  if (!table.has("conflict")) return;
  if (!table.isText("conflict")) {
    table.fail("conflict", "must be \"keep-both\", \"server\" or \"local\"",
               "instead of 0 write \"local\", instead of 1 \"server\"");
  }
  std::string text;
  table.text("conflict", text, kLongestWord);
  for (const ConflictWord& known : kConflictWords) {
    if (known.word != text) continue;
    rule = known.rule;
    return;
  }
  table.fail("conflict", "must be \"keep-both\", \"server\" or \"local\"");
}

void readPolicy(ConfigTable& table, FolderPolicy& policy) {
  FolderSettings& settings = policy.protocol;
  table.flag("selected", policy.selected);
  table.number("sync_mode", 0, 2, settings.syncMode);
  readConflictRule(table, settings.conflict);
  table.number("truncation", 0, 9, settings.truncation);
  table.number("filter", 0, 8, settings.filter);
  std::vector<std::string> fields;
  if (!table.texts("supported", fields)) return;
  for (const std::string& field : fields) checkFieldName(field, table);
  policy.supported = std::move(fields);
}

void readUrl(ConfigTable& table, Account& account) {
  bool allowPlainHttp = false;
  table.flag("allow_plain_http", allowPlainHttp);
  std::string text;
  table.text("url", text, kLongestPath);
  if (!table.has("url")) table.fail("", "`url` is missing", "add url = \"https://...\"");
  try {
    account.url = parseUrl(text);
  } catch (const std::invalid_argument& error) {
    table.fail("url", error.what());
  }
  if (account.url.authority().size() > room(sizeof(SERVER_INFO::host))) {
    table.fail("url", fmt::format("the host is too long: at most {} bytes", room(sizeof(SERVER_INFO::host))));
  }
  if (account.url.path.size() > room(sizeof(SERVER_INFO::path))) {
    table.fail("url", fmt::format("the path is too long: at most {} bytes", room(sizeof(SERVER_INFO::path))));
  }
  account.loopbackOnly = !account.url.tls && !allowPlainHttp;
  if (account.loopbackOnly && !account.url.isLoopback()) {
    table.fail("url", "plain http would send the password readable by everyone on the way",
               "use https://, or set allow_plain_http = true if you know what you do");
  }
}

void readLogin(ConfigTable& table, Account& account) {
  table.text("user", account.user, room(sizeof(SERVER_INFO::user)));
  table.text("domain", account.domain, room(sizeof(SERVER_INFO::domain)));
  if (account.user.empty()) table.fail("", "`user` is missing", "add user = \"...\"");
  checkQueryText("user", account.user, table);
  checkLoginText("user", account.user, table);
  checkLoginText("domain", account.domain, table);
}

void readPasswordSource(ConfigTable& table, PasswordSource& source) {
  table.text("password_file", source.file, kLongestPath);
  if (table.isText("password_command")) {
    std::string line;
    table.text("password_command", line, kLongestPath);
    source.command = {"/bin/sh", "-c", line};
    if (line.empty()) table.fail("password_command", "is empty");
  } else if (table.has("password_command")) {
    table.texts("password_command", source.command);
    if (source.command.empty() || source.command.front().empty()) {
      table.fail("password_command", "names no program");
    }
  }
  if (table.has("password_file") && source.file.empty()) table.fail("password_file", "is empty");
  if (!source.file.empty() && !source.command.empty()) {
    table.fail("password_command", "stands beside `password_file`", "keep one of the two");
  }
}

void readDevice(ConfigTable& table, Account& account) {
  table.text("device_id", account.deviceId, room(sizeof(SERVER_INFO::deviceId)));
  table.text("device_type", account.deviceType, room(sizeof(SERVER_INFO::deviceType)));
  table.text("user_agent", account.userAgent, room(sizeof(SERVER_INFO::userAgent)));
  checkQueryText("device_id", account.deviceId, table);
  checkQueryText("device_type", account.deviceType, table);
  if (account.deviceType.empty()) table.fail("device_type", "is empty");
  if (table.has("device_id") && account.deviceId.empty()) table.fail("device_id", "is empty");
}

void readTimeouts(ConfigTable& table, Timeouts& timeouts) {
  const struct {
    const char* key;
    std::chrono::seconds& value;
  } keys[] = {{"connect_timeout", timeouts.connect},
              {"idle_timeout", timeouts.idle},
              {"total_timeout", timeouts.total}};
  for (const auto& [key, value] : keys) {
    int seconds = static_cast<int>(value.count());
    table.number(key, 1, kLongestTimeout, seconds);
    value = std::chrono::seconds(seconds);
  }
}

Account readAccount(const std::string& name, ConfigTable& table) {
  checkAccountName(name, table);
  Account account;
  account.name = name;
  readUrl(table, account);
  readLogin(table, account);
  readPasswordSource(table, account.password);
  readDevice(table, account);
  table.text("ca_file", account.caFile, kLongestPath);
  readTimeouts(table, account.timeouts);
  readPolicy(table, account.policy);
  table.tables("folder", [&account](const std::string& folder, ConfigTable& settings) {
    FolderPolicy& own = account.folders[folder];
    own = account.policy;
    readPolicy(settings, own);
  });
  return account;
}

}  // namespace

const FolderPolicy& Account::policyFor(const std::string& folderName, const std::string& folderId) const {
  auto own = folders.find(folderId);
  if (own == folders.end()) own = folders.find(folderName);
  return own == folders.end() ? policy : own->second;
}

FolderSettings Account::settingsFor(const Folder& folder) const {
  const FolderPolicy& chosen = policyFor(folder.name, folder.serverId);
  FolderSettings settings = chosen.protocol;
  if (!chosen.supported || !folder.dataType) return settings;
  std::vector<std::string> elements;
  for (const std::string& field : *chosen.supported) {
    if (const char* element = elementOf(field, *folder.dataType)) elements.emplace_back(element);
  }
  if (!elements.empty() || chosen.supported->empty()) settings.supported = std::move(elements);
  return settings;
}

std::vector<const Account*> Config::select(const std::string& name) const {
  std::vector<const Account*> selected;
  std::string names;
  for (const Account& account : accounts) {
    if (name.empty() || account.name == name) selected.push_back(&account);
    names += (names.empty() ? "" : ", ") + account.name;
  }
  if (selected.empty()) {
    throw ExitError(ExitCode::kUsage,
                    fmt::format("there is no account \"{}\" in {}", displayable(name), file),
                    fmt::format("the accounts are: {}", names));
  }
  return selected;
}

Config parseConfig(std::string_view text, const std::string& file) {
  toml::table root;
  try {
    root = toml::parse(text, file);
  } catch (const toml::parse_error& error) {
    throw ExitError(ExitCode::kConfiguration, fmt::format("{}:{}: {}", file, error.source().begin.line,
                                                          displayable(error.description())));
  }
  Config config;
  config.file = file;
  ConfigTable table(root, "", file);
  table.tables("account", [&config](const std::string& name, ConfigTable& account) {
    config.accounts.push_back(readAccount(name, account));
  });
  table.finish();
  if (config.accounts.empty()) {
    throw ExitError(ExitCode::kConfiguration, fmt::format("{}: there is no account", file),
                    "add one: [account.NAME] with `url` and `user`; see airsync(1)");
  }
  return config;
}

Config loadConfig(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    throw ExitError(ExitCode::kConfiguration, fmt::format("can't read the configuration {}", file),
                    "write one as airsync(1) shows, or name another with --config FILE");
  }
  const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  return parseConfig(text, file);
}

}  // namespace airsync
