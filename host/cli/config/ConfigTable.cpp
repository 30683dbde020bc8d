#include "cli/config/ConfigTable.h"

#include <algorithm>
#include <fmt/core.h>
#include <utility>

#include "cli/ExitError.h"
#include "cli/output/Displayable.h"

namespace airsync {

namespace {

bool isControl(char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f; }

std::string place(const std::string& file, const toml::node& node) {
  const auto line = node.source().begin.line;
  return line == 0 ? file : fmt::format("{}:{}", file, line);
}

[[noreturn]] void failAt(const std::string& where, const std::string& name, const std::string& problem,
                         const std::string& advice) {
  ErrorStory story;
  story.operation = where + ":";
  story.subject = displayable(name);
  story.cause = problem;
  story.advice = advice;
  throw ExitError(ExitCode::kConfiguration, std::move(story));
}

}  // namespace

ConfigTable::ConfigTable(const toml::table& table, std::string path, const std::string& file)
    : table_(table), path_(std::move(path)), file_(file) {}

const toml::node* ConfigTable::take(const char* key) {
  known_.insert(key);
  return table_.get(key);
}

void ConfigTable::fail(const std::string& key, const std::string& problem, const std::string& advice) const {
  const toml::node* node = key.empty() ? nullptr : table_.get(key);
  const std::string where = place(file_, node == nullptr ? table_ : *node);
  const std::string name = key.empty() ? path_ : path_.empty() ? key : path_ + "." + key;
  failAt(where, name, problem, advice);
}

std::string ConfigTable::checkedText(const char* key, const toml::node& node, std::size_t most) const {
  const auto text = node.value_exact<std::string>();
  if (!text) fail(key, "must be a text in quotes");
  if (std::any_of(text->begin(), text->end(), isControl)) {
    fail(key, "must not contain control characters (a line end, a tab, ...)");
  }
  if (text->size() > most) fail(key, fmt::format("is too long: {} bytes, at most {}", text->size(), most));
  return *text;
}

void ConfigTable::text(const char* key, std::string& value, std::size_t most) {
  if (const toml::node* node = take(key)) value = checkedText(key, *node, most);
}

void ConfigTable::number(const char* key, std::int32_t least, std::int32_t most, std::int32_t& value) {
  const toml::node* node = take(key);
  if (node == nullptr) return;
  const auto number = node->value_exact<std::int64_t>();
  if (!number || *number < least || *number > most) {
    fail(key, fmt::format("must be a whole number from {} to {}", least, most));
  }
  value = static_cast<std::int32_t>(*number);
}

void ConfigTable::flag(const char* key, bool& value) {
  const toml::node* node = take(key);
  if (node == nullptr) return;
  const auto flag = node->value_exact<bool>();
  if (!flag) fail(key, "must be true or false");
  value = *flag;
}

bool ConfigTable::texts(const char* key, std::vector<std::string>& value) {
  const toml::node* node = take(key);
  if (node == nullptr) return false;
  const toml::array* array = node->as_array();
  if (array == nullptr) fail(key, "must be an array of texts: [\"...\", \"...\"]");
  value.clear();
  constexpr std::size_t kLongest = 4096;
  for (const toml::node& entry : *array) value.push_back(checkedText(key, entry, kLongest));
  return true;
}

bool ConfigTable::isText(const char* key) const {
  const toml::node* node = table_.get(key);
  return node != nullptr && node->is_string();
}

void ConfigTable::tables(const char* key,
                         const std::function<void(const std::string& name, ConfigTable&)>& each) {
  const toml::node* node = take(key);
  if (node == nullptr) return;
  if (!node->is_table())
    fail(key, fmt::format("must be a table: [{}{}{}.NAME]", path_, path_.empty() ? "" : ".", key));
  std::vector<std::pair<std::string, const toml::node*>> entries;
  for (const auto& [name, entry] : *node->as_table()) entries.emplace_back(name.str(), &entry);
  std::stable_sort(entries.begin(), entries.end(), [](const auto& left, const auto& right) {
    return left.second->source().begin.line < right.second->source().begin.line;
  });
  for (const auto& [name, entry] : entries) {
    const std::string path = fmt::format("{}{}{}.{}", path_, path_.empty() ? "" : ".", key, name);
    if (!entry->is_table()) {
      failAt(place(file_, *entry), path, "must be a table",
             fmt::format("write it as [{}]", displayable(path)));
    }
    ConfigTable table(*entry->as_table(), path, file_);
    each(name, table);
    table.finish();
  }
}

void ConfigTable::finish() const {
  const toml::node* first = nullptr;
  std::string key;
  for (const auto& [name, node] : table_) {
    if (known_.count(name.str()) != 0) continue;
    if (first != nullptr && first->source().begin.line <= node.source().begin.line) continue;
    first = &node;
    key = name.str();
  }
  if (first == nullptr) return;
  if (key == "password") {
    fail(key, "a password does not belong into this file",
         "use `password_command`, `password_file` or the environment variable AIRSYNC_PASSWORD");
  }
  fail(key, "unknown key", "see airsync(1) for the keys that exist");
}

}  // namespace airsync
