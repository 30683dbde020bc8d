#include "formats/ContactJson.h"

#include <algorithm>
#include <fmt/core.h>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

#include "api/ContactFields.h"
#include "formats/JsonPosition.h"
#include "store/UtcTime.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;
using nlohmann::json;

const char* wanted(AS_FIELD_FORM_T form) {
  switch (form) {
    case AS_FORM_NUMBER:
      return "a whole number of 32 bits";
    case AS_FORM_FLAG:
      return "true or false";
    case AS_FORM_TIME:
      return "a date in a text, \"1970-01-31\" or \"1970-01-31T12:00:00Z\"";
    case AS_FORM_LIST:
      return "an array of texts";
    default:  // contacts have no fields of other forms
      return "a text";
  }
}

// Takes the parser's events. The object is flat, so its state is the current field and, within an array,
// the entries so far.
class Reader : public nlohmann::json_sax<json> {
 public:
  explicit Reader(JsonPosition& position) : position_(position) {}

  ContactPatch take() { return std::move(patch_); }

  bool null() override { return value(std::monostate{}, "null"); }
  bool boolean(bool flag) override { return value(flag, "true or false", AS_FORM_FLAG); }
  bool number_integer(number_integer_t number) override { return whole(number); }
  bool number_unsigned(number_unsigned_t number) override {
    constexpr auto kMost = static_cast<number_unsigned_t>(std::numeric_limits<std::int32_t>::max());
    return whole(number > kMost ? number_integer_t{std::numeric_limits<std::int64_t>::max()}
                                : static_cast<number_integer_t>(number));
  }
  bool number_float(number_float_t, const string_t&) override { mismatch("a number with a fraction"); }
  bool string(string_t& text) override;
  bool binary(binary_t&) override { mismatch("bytes"); }

  bool start_object(std::size_t) override {
    if (inList_ || field_) mismatch("an object");
    return true;
  }
  bool key(string_t& name) override;
  bool end_object() override { return true; }
  bool start_array(std::size_t) override;
  bool end_array() override;
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override;

 private:
  [[noreturn]] void fail(const std::string& problem) const {
    const auto [line, column] = position_.place();
    throw RecordError(problem, line, column);
  }
  [[noreturn]] void failField(const std::string& problem) const {
    fail(fmt::format("{} {}", AS_CONTACT_FIELDS[*field_].name, problem));
  }
  [[noreturn]] void mismatch(const char* found) const {
    if (!field_)
      fail(fmt::format("a record is an object, {{\"FirstName\": \"Ann\", ...}}, and this is {}", found));
    if (inList_) failField(fmt::format("must hold texts only, and this is {}", found));
    failField(fmt::format("must be {}, and this is {}", wanted(form()), found));
  }

  AS_FIELD_FORM_T form() const { return AS_CONTACT_FIELDS[*field_].form; }

  bool value(Contact::Value value, const char* found, std::optional<AS_FIELD_FORM_T> fitting = std::nullopt) {
    if (!field_ || inList_ || (fitting && form() != *fitting)) mismatch(found);
    patch_.entries.push_back({*field_, std::move(value)});
    field_.reset();
    return true;
  }
  bool whole(number_integer_t number);
  void checkText(const std::string& text) const;

  JsonPosition& position_;
  ContactPatch patch_;
  std::optional<std::size_t> field_;
  Contact::List list_;
  bool inList_ = false;
};

bool Reader::whole(number_integer_t number) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (number < Limits::min() || number > Limits::max()) mismatch("a number beyond 32 bits");
  return value(static_cast<std::int32_t>(number), "a number", AS_FORM_NUMBER);
}

void Reader::checkText(const std::string& text) const {
  if (text.find('\0') != std::string::npos) failField("must not contain the character U+0000");
  // Only the first part between quotes would come back from the server.
  if (form() == AS_FORM_QUOTED && text.find('"') != std::string::npos) {
    failField("must not contain double quotes");
  }
}

bool Reader::string(string_t& text) {
  if (!field_) mismatch("a text");
  checkText(text);
  if (inList_) {
    if (text.find("@@") != std::string::npos) failField("must not have \"@@\" in an entry");
    list_.push_back(std::move(text));
    return true;
  }
  if (form() == AS_FORM_TIME) {
    const auto time = UtcTime::parse(text);
    if (!time) mismatch("another text");
    if (!time->valid()) failField("is a date or time that does not exist");
    return value(*time, "a date", AS_FORM_TIME);
  }
  if (form() != AS_FORM_TEXT && form() != AS_FORM_QUOTED) mismatch("a text");
  return value(std::move(text), "a text");
}

bool Reader::key(string_t& name) {
  const auto field = Contact::field(name);
  if (!field) fail(fmt::format("there is no field \"{}\" (names are written as `airsync show` does)", name));
  if (patch_.names(name)) fail(fmt::format("{} stands here twice", name));
  field_ = field;
  return true;
}

bool Reader::start_array(std::size_t) {
  if (!field_ || inList_ || form() != AS_FORM_LIST) mismatch("an array");
  inList_ = true;
  list_.clear();
  return true;
}

bool Reader::end_array() {
  // The separator of packed lists would be found one character too early.
  for (std::size_t i = 0; i + 1 < list_.size(); ++i) {
    if (!list_[i].empty() && list_[i].back() == '@') {
      failField("must not have an entry that ends with \"@\" before another one");
    }
  }
  inList_ = false;
  return value(std::move(list_), "an array");
}

bool Reader::parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) {
  // "[json.exception.parse_error.101] parse error at line 1, column 2: ..." names the place once more.
  const std::string text = error.what();
  const std::size_t cause = text.find(": ");
  fail("not JSON: " + (cause == std::string::npos ? text : text.substr(cause + 2)));
}

}  // namespace

bool ContactPatch::names(std::string_view field) const {
  const auto index = Contact::field(field);
  return std::any_of(entries.begin(), entries.end(),
                     [&](const Entry& entry) { return entry.field == index; });
}

void ContactPatch::applyTo(Contact& contact) const {
  for (const Entry& entry : entries) contact.set(entry.field, entry.value);
}

ContactPatch parseContactPatch(std::string_view text) {
  JsonPosition position(text);
  Reader reader(position);
  json::sax_parse(position.begin(), position.end(), &reader);
  return reader.take();
}

nlohmann::ordered_json contactToJson(const Contact& contact) {
  nlohmann::ordered_json record = nlohmann::ordered_json::object();
  for (std::size_t field = 0; field < Contact::kFields; ++field) {
    std::visit(
        [&](const auto& value) {
          using Type = std::decay_t<decltype(value)>;
          if constexpr (std::is_same_v<Type, UtcTime>) {
            record[AS_CONTACT_FIELDS[field].name] = value.text();
          } else if constexpr (std::is_constructible_v<nlohmann::ordered_json, Type> &&
                               !std::is_same_v<Type, std::monostate>) {
            record[AS_CONTACT_FIELDS[field].name] = value;
          }
        },
        contact[field]);
  }
  return record;
}

}  // namespace airsync
