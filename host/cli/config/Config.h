// What the user configured: accounts, and how their folders are synchronised.
//
// The file is TOML, $XDG_CONFIG_HOME/airsync/config.toml unless --config names another:
//
//   [account.work]
//   url = "https://sync.example.com/service"
//   user = "ann"
//   password_command = ["pass", "show", "work"]
//
//   [account.work.folder."Contacts"]     # a folder by its name or its id
//   truncation = 8
//
// Everything is checked while it is read: a key that nobody knows, a value of the wrong kind, out of its
// range or too long for the library's records is an error that names the file, the line and the key.
#ifndef AIRSYNC_CLI_CONFIG_CONFIG_H
#define AIRSYNC_CLI_CONFIG_CONFIG_H

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/config/Url.h"
#include "store/StoreTypes.h"

namespace airsync {

/// The protocol's settings as they are without configuration: a local change replaces the whole item on the
/// server, so whole bodies are fetched.
inline FolderSettings wholeBodies() {
  FolderSettings settings;
  settings.truncation = 8;
  return settings;
}

/// How a folder takes part. The numbers in `protocol` are the protocol's own.
struct FolderPolicy {
  bool selected = true;                     // false: `airsync sync` passes the folder over unless it is named
  FolderSettings protocol = wholeBodies();  // but for `supported`
  // Names of fields that are kept here, of contacts and of events; see Account::settingsFor.
  std::optional<std::vector<std::string>> supported;
};

/// Where an account's password comes from.
struct PasswordSource {
  std::string file;                  // empty: no file
  std::vector<std::string> command;  // program and arguments; empty: no command
};

struct Timeouts {
  std::chrono::seconds connect{30};
  std::chrono::seconds idle{60};
  std::chrono::seconds total{600};
};

struct Account {
  std::string name;
  Url url;
  bool loopbackOnly = false;  // plain http: whatever the host's name resolves to, it must be this machine
  std::string user;
  std::string domain;
  PasswordSource password;
  std::string deviceId;  // empty: made once, kept with the account's state
  std::string deviceType = "airsync";
  std::string userAgent;
  std::string caFile;  // empty: the system's certificates
  Timeouts timeouts;
  FolderPolicy policy;                          // of every folder without a table of its own
  std::map<std::string, FolderPolicy> folders;  // by name or id, complete

  /// A table for the id goes before one for the name.
  const FolderPolicy& policyFor(const std::string& folderName, const std::string& folderId) const;

  /// What requests about a folder say. Of the fields that are kept here they name those that items of the
  /// folder have, by their elements; a list in which there is none of them is no list for the folder.
  FolderSettings settingsFor(const Folder& folder) const;
};

struct Config {
  std::string file;
  std::vector<Account> accounts;  // in the order of the file, at least one

  /// The one named, or all of them when `name` is empty. Throws ExitError(kUsage) when there is no such
  /// account.
  std::vector<const Account*> select(const std::string& name) const;
};

/// Reads a configuration file. Throws ExitError(kConfiguration).
Config loadConfig(const std::string& file);

/// The same with the text given; `file` is what errors call it.
Config parseConfig(std::string_view text, const std::string& file);

}  // namespace airsync

#endif
