#include "formats/JsonTree.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

#include "formats/JsonPosition.h"

namespace airsync {

namespace {

using nlohmann::json;
using Kind = JsonNode::Kind;

// A list of a category of an exception of an event is the fourth; more is nobody's record.
constexpr std::size_t kDeepest = 8;

// Takes the parser's events.
class Builder : public nlohmann::json_sax<json> {
 public:
  Builder(const JsonTree& tree, const JsonPosition& position, JsonNode& root)
      : tree_(tree), position_(position), root_(root) {}

  bool null() override {
    return scalar(Kind::null, [](JsonNode&) {});
  }
  bool boolean(bool flag) override {
    return scalar(Kind::flag, [flag](JsonNode& node) { node.flag = flag; });
  }
  bool number_integer(number_integer_t number) override { return whole(number); }
  bool number_unsigned(number_unsigned_t number) override {
    constexpr number_integer_t kMost = std::numeric_limits<number_integer_t>::max();
    return whole(number > static_cast<number_unsigned_t>(kMost) ? kMost
                                                                : static_cast<number_integer_t>(number));
  }
  bool number_float(number_float_t, const string_t&) override {
    return scalar(Kind::fraction, [](JsonNode&) {});
  }
  bool string(string_t& text) override {
    return scalar(Kind::text, [&text](JsonNode& node) { node.text = std::move(text); });
  }
  bool binary(binary_t&) override { return false; }  // JSON has none

  bool start_object(std::size_t) override { return open(Kind::object); }
  bool end_object() override { return close(); }
  bool start_array(std::size_t) override { return open(Kind::array); }
  bool end_array() override { return close(); }
  bool key(string_t& name) override {
    open_.back()->members.push_back({std::move(name), position_.read(), {}});
    return true;
  }

  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
    // "[json.exception.parse_error.101] parse error at line 1, column 2: ..." names the place once more.
    std::string text = error.what();
    // "...; last read: 'TEXT'; expected ..." would show what records hold.
    const std::size_t quoted = text.find("; last read: '");
    if (quoted != std::string::npos) text.erase(quoted, text.rfind('\'') + 1 - quoted);
    const std::size_t cause = text.find(": ");
    tree_.fail(position_.read(), "not JSON: " + (cause == std::string::npos ? text : text.substr(cause + 2)));
  }

 private:
  // The node that the next value fills. A container grows only when its last value is complete, so the
  // addresses of open nodes stay.
  JsonNode& next(Kind kind) {
    JsonNode* node = &root_;
    if (!open_.empty() && open_.back()->kind == Kind::array) {
      node = &open_.back()->entries.emplace_back();
    } else if (!open_.empty()) {
      node = &open_.back()->members.back().value;
    }
    node->kind = kind;
    node->at = position_.read();
    return *node;
  }

  template <typename Fill>
  bool scalar(Kind kind, const Fill& fill) {
    fill(next(kind));
    return true;
  }

  bool whole(std::int64_t number) {
    return scalar(Kind::number, [number](JsonNode& node) { node.number = number; });
  }

  bool open(Kind kind) {
    if (open_.size() == kDeepest) tree_.fail(position_.read(), "no record has values so deep in each other");
    open_.push_back(&next(kind));
    return true;
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  const JsonTree& tree_;
  const JsonPosition& position_;
  JsonNode& root_;
  std::vector<JsonNode*> open_;
};

}  // namespace

const char* JsonNode::found() const {
  switch (kind) {
    case Kind::null:
      return "null";
    case Kind::flag:
      return "true or false";
    case Kind::number:
      return "a number";
    case Kind::fraction:
      return "a number with a fraction";
    case Kind::text:
      return "a text";
    case Kind::array:
      return "an array";
    case Kind::object:
      return "an object";
  }
  return "";
}

JsonTree::JsonTree(std::string_view text) : text_(text) {
  JsonPosition position(text);
  Builder builder(*this, position, root_);
  json::sax_parse(position.begin(), position.end(), &builder);
}

void JsonTree::fail(std::size_t at, const std::string& problem) const {
  const std::string_view before = text_.substr(0, at == 0 ? 0 : at - 1);
  const auto lines = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
  const std::size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
  throw RecordError(problem, lines + 1, before.size() - lineStart + 1);
}

}  // namespace airsync
