// One table of the configuration file, read key by key: every key is asked for once, and what nobody asked
// for is an error.
#ifndef AIRSYNC_CLI_CONFIG_CONFIG_TABLE_H
#define AIRSYNC_CLI_CONFIG_CONFIG_TABLE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <toml++/toml.h>
#include <vector>

namespace airsync {

class ConfigTable {
 public:
  /// `path` is how errors name the table, for example account.work; empty for the whole file.
  ConfigTable(const toml::table& table, std::string path, const std::string& file);

  bool has(const char* key) const { return table_.contains(key); }

  // Each leaves `value` alone when the key is absent. Texts have at most `most` bytes and no control
  // characters; numbers lie within [least, most].
  void text(const char* key, std::string& value, std::size_t most);
  void number(const char* key, std::int32_t least, std::int32_t most, std::int32_t& value);
  void flag(const char* key, bool& value);
  /// Whether the key is there.
  bool texts(const char* key, std::vector<std::string>& value);
  /// Whether `key` holds a text (true) or an array (false, also when absent).
  bool isText(const char* key) const;
  /// Calls `each` with every sub-table of the table `key`, in the order of the file.
  void tables(const char* key, const std::function<void(const std::string& name, ConfigTable&)>& each);

  /// Throws ExitError(kConfiguration) for the first key, by line, that nobody asked for.
  void finish() const;

  /// Throws ExitError(kConfiguration) about `key` (about the table itself when it is empty).
  [[noreturn]] void fail(const std::string& key, const std::string& problem,
                         const std::string& advice = {}) const;

 private:
  const toml::node* take(const char* key);
  std::string checkedText(const char* key, const toml::node& node, std::size_t most) const;

  const toml::table& table_;
  std::string path_;
  const std::string& file_;
  std::set<std::string, std::less<>> known_;
};

}  // namespace airsync

#endif
