#include "formats/FieldJson.h"

#include <cstdint>
#include <fmt/core.h>
#include <limits>
#include <type_traits>
#include <utility>
#include <variant>

#include "formats/Base64.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;
using Kind = JsonNode::Kind;

const char* wanted(AS_FIELD_FORM_T form) {
  switch (form) {
    case AS_FORM_TEXT:
    case AS_FORM_QUOTED:
      return "a text";
    case AS_FORM_NUMBER:
    case AS_FORM_INLINE_NUMBER:
      return "a whole number of 32 bits";
    case AS_FORM_FLAG:
    case AS_FORM_INLINE_FLAG:
      return "true or false";
    case AS_FORM_TIME:
    case AS_FORM_COMPACT_TIME:
      return "a date in a text, \"1970-01-31\" or \"1970-01-31T12:00:00Z\"";
    case AS_FORM_LIST:
      return "an array of texts";
    case AS_FORM_ATTENDEES:
      return "an array of {\"Name\": ..., \"Email\": ...}";
    case AS_FORM_ZONE:
      return "the base64 of 172 bytes in a text";
  }
  return "";
}

// One field being read: what its errors need to know.
class FieldReader {
 public:
  FieldReader(const JsonTree& tree, const std::string& name, AS_FIELD_FORM_T form)
      : tree_(tree), name_(name), form_(form) {}

  FieldValue read(const JsonNode& node) const;

 private:
  [[noreturn]] void fail(const JsonNode& node, const std::string& problem) const {
    tree_.fail(node.at, name_ + " " + problem);
  }
  void expect(const JsonNode& node, Kind kind) const {
    if (node.kind != kind) mismatch(node, node.found());
  }
  [[noreturn]] void mismatch(const JsonNode& node, const std::string& found) const {
    fail(node, fmt::format("must be {}, and this is {}", wanted(form_), found));
  }

  std::string text(const JsonNode& node) const;
  std::int32_t number(const JsonNode& node) const;
  UtcTime time(const JsonNode& node) const;
  List list(const JsonNode& node) const;
  std::vector<Attendee> attendees(const JsonNode& node) const;
  Attendee attendee(const JsonNode& node) const;
  void refuseInText(const JsonNode& node, const char* part) const;
  ZoneBlock zone(const JsonNode& node) const;

  const JsonTree& tree_;
  const std::string& name_;
  AS_FIELD_FORM_T form_;
};

FieldValue FieldReader::read(const JsonNode& node) const {
  if (node.kind == Kind::null) return std::monostate{};
  switch (form_) {
    case AS_FORM_TEXT:
    case AS_FORM_QUOTED:
      return text(node);
    case AS_FORM_NUMBER:
    case AS_FORM_INLINE_NUMBER:
      return number(node);
    case AS_FORM_FLAG:
    case AS_FORM_INLINE_FLAG:
      expect(node, Kind::flag);
      return node.flag;
    case AS_FORM_TIME:
    case AS_FORM_COMPACT_TIME:
      return time(node);
    case AS_FORM_LIST:
      return list(node);
    case AS_FORM_ATTENDEES:
      return attendees(node);
    case AS_FORM_ZONE:
      return zone(node);
  }
  return std::monostate{};
}

std::string FieldReader::text(const JsonNode& node) const {
  expect(node, Kind::text);
  if (node.text.find('\0') != std::string::npos) fail(node, "must not contain the character U+0000");
  // Only the first part between quotes would come back from the server.
  if (form_ == AS_FORM_QUOTED) refuseInText(node, "\"");
  return node.text;
}

void FieldReader::refuseInText(const JsonNode& node, const char* part) const {
  if (node.text.find(part) == std::string::npos) return;
  fail(node, *part == '"' ? std::string("must not contain double quotes")
                          : fmt::format("must not have \"{}\" in an entry", part));
}

std::int32_t FieldReader::number(const JsonNode& node) const {
  using Limits = std::numeric_limits<std::int32_t>;
  expect(node, Kind::number);
  if (node.number < Limits::min() || node.number > Limits::max()) mismatch(node, "a number beyond 32 bits");
  return static_cast<std::int32_t>(node.number);
}

UtcTime FieldReader::time(const JsonNode& node) const {
  expect(node, Kind::text);
  const auto time = UtcTime::parse(node.text);
  if (!time) mismatch(node, "another text");
  if (!time->valid()) fail(node, "is a date or time that does not exist");
  return *time;
}

List FieldReader::list(const JsonNode& node) const {
  expect(node, Kind::array);
  List entries;
  for (const JsonNode& entry : node.entries) {
    if (entry.kind != Kind::text)
      fail(entry, fmt::format("must hold texts only, and this is {}", entry.found()));
    refuseInText(entry, "@@");
    entries.push_back(text(entry));
    // The separator of packed lists would be found one character too early.
    if (&entry != &node.entries.back() && entry.text.ends_with('@')) {
      fail(entry, "must not have an entry that ends with \"@\" before another one");
    }
  }
  return entries;
}

std::vector<Attendee> FieldReader::attendees(const JsonNode& node) const {
  expect(node, Kind::array);
  std::vector<Attendee> people;
  for (const JsonNode& entry : node.entries) people.push_back(attendee(entry));
  if (unpackAttendees(packAttendees(people)) != people) {
    fail(node, "has an entry with \"#\" or \"@\" where it touches the next one");
  }
  return people;
}

Attendee FieldReader::attendee(const JsonNode& node) const {
  if (node.kind != Kind::object)
    fail(node, fmt::format("must hold objects only, and this is {}", node.found()));
  refuseRepeatedNames(tree_, node, name_ + ".");
  Attendee person;
  for (const JsonMember& member : node.members) {
    const bool isName = member.name == "Name";
    if (!isName && member.name != "Email") failUnknownName(tree_, member, name_ + ".");
    const std::string name = name_ + "." + member.name;
    const FieldReader reader(tree_, name, AS_FORM_TEXT);
    const FieldValue value = reader.read(member.value);
    for (const char* separator : {"@@", "##"}) reader.refuseInText(member.value, separator);
    if (const auto* text = std::get_if<std::string>(&value)) (isName ? person.name : person.email) = *text;
  }
  if (person.name.empty() && person.email.empty())
    fail(node, "has an entry with neither a name nor an address");
  return person;
}

ZoneBlock FieldReader::zone(const JsonNode& node) const {
  expect(node, Kind::text);
  ZoneBlock block = {};
  const auto bytes = bytesOfBase64(node.text);
  if (!bytes || bytes->size() != block.size()) mismatch(node, "another text");
  std::copy(bytes->begin(), bytes->end(), block.begin());
  return block;
}

}  // namespace

FieldValue readField(const JsonTree& tree, const JsonNode& node, const std::string& name,
                     AS_FIELD_FORM_T form) {
  return FieldReader(tree, name, form).read(node);
}

void requireRecord(const JsonTree& tree, const JsonNode& node, const char* example) {
  if (node.kind == Kind::object) return;
  tree.fail(node.at,
            fmt::format("a record is an object, {{{}, ...}}, and this is {}", example, node.found()));
}

void refuseRepeatedNames(const JsonTree& tree, const JsonNode& object, const std::string& path) {
  std::set<std::string_view> names;
  for (const JsonMember& member : object.members) {
    if (!names.insert(member.name).second) tree.fail(member.at, path + member.name + " stands here twice");
  }
}

void failUnknownName(const JsonTree& tree, const JsonMember& member, const std::string& path) {
  tree.fail(member.at, fmt::format("there is no field \"{}{}\" (names are written as `airsync show` does)",
                                   path, member.name));
}

void writeField(nlohmann::ordered_json& record, const char* name, const FieldValue& value) {
  std::visit(
      [&record, name](const auto& content) {
        using Type = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Type, UtcTime>) {
          record[name] = content.text();
        } else if constexpr (std::is_same_v<Type, ZoneBlock>) {
          record[name] = base64Of(content);
        } else if constexpr (std::is_same_v<Type, std::vector<Attendee>>) {
          record[name] = nlohmann::ordered_json::array();
          for (const Attendee& person : content) {
            record[name].push_back({{"Name", person.name}, {"Email", person.email}});
          }
        } else if constexpr (!std::is_same_v<Type, std::monostate>) {
          record[name] = content;
        }
      },
      value);
}

}  // namespace airsync
