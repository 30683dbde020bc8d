#include "cli/output/RecordText.h"

#include <algorithm>
#include <fmt/core.h>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>

#include "cli/output/Displayable.h"

namespace airsync {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kStep = "    ";

struct Name {
  std::string_view of;
  std::string_view text;
};

// Lists of parts, and what one of them is called.
constexpr Name kParts[] = {{"Attachments", "Attachment"}, {"Exceptions", "Exception"}};

// What the types of a recurrence mean.
constexpr Name kTypes[] = {{"0", "daily"},           {"1", "weekly"},
                           {"2", "monthly, by day"}, {"3", "monthly, by weekday"},
                           {"5", "yearly, by day"},  {"6", "yearly, by weekday"}};

template <std::size_t size>
std::string_view find(const Name (&names)[size], std::string_view of) {
  const auto found =
      std::find_if(std::begin(names), std::end(names), [of](const Name& name) { return name.of == of; });
  return found == std::end(names) ? std::string_view() : found->text;
}

class Lines {
 public:
  void members(const Json& record, const std::string& indent) {
    for (const auto& [name, value] : record.items()) member(name, value, indent);
  }

  std::vector<std::string> take() { return std::move(lines_); }

 private:
  void member(const std::string& name, const Json& value, const std::string& indent) {
    if (value.is_object()) {
      lines_.push_back(indent + name + ":");
      members(value, indent + kStep);
    } else if (value.is_array()) {
      array(name, value, indent);
    } else if (name == "Timezone") {
      lines_.push_back(indent + name + ": (a time zone)");
    } else if (value.is_string()) {
      text(indent + name + ": ", value.get<std::string>(), indent);
    } else {
      lines_.push_back(fmt::format("{}{}: {}{}", indent, name, value.dump(), meaning(name, value)));
    }
  }

  static std::string meaning(const std::string& name, const Json& value) {
    const std::string_view words = name == "Type" ? find(kTypes, value.dump()) : std::string_view();
    return words.empty() ? std::string() : fmt::format(" ({})", words);
  }

  // Texts may have several lines: all but the first are indented. An empty one is a field all the same.
  void text(std::string lead, const std::string& content, const std::string& indent) {
    if (content.empty()) return lines_.push_back(lead);
    std::istringstream stream(content);
    std::string line;
    while (std::getline(stream, line)) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      lines_.push_back(lead + displayable(line));
      lead = indent + kStep;
    }
  }

  void array(const std::string& name, const Json& value, const std::string& indent) {
    const std::string_view part = find(kParts, name);
    if (part.empty()) {
      lines_.push_back(indent + name + ": " + joined(value));
      return;
    }
    for (std::size_t i = 0; i < value.size(); ++i) {
      lines_.push_back(fmt::format("{}{} {}:", indent, part, i + 1));
      members(value[i], indent + kStep);
    }
  }

  static std::string joined(const Json& entries) {
    std::string text;
    for (const Json& entry : entries) text += (text.empty() ? "" : ", ") + one(entry);
    return text;
  }

  static std::string one(const Json& entry) {
    if (entry.is_string()) return displayable(entry.get<std::string>());
    const std::string name = entry.value("Name", "");
    const std::string email = entry.value("Email", "");
    return displayable(email.empty() ? name : name.empty() ? email : fmt::format("{} <{}>", name, email));
  }

  std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> recordLines(const Json& record) {
  Lines lines;
  lines.members(record, "");
  return lines.take();
}

}  // namespace airsync
