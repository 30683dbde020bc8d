// A JSON text as a tree whose values know where they stand, so that an error can name its place.
#ifndef AIRSYNC_FORMATS_JSON_TREE_H
#define AIRSYNC_FORMATS_JSON_TREE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/RecordError.h"

namespace airsync {

struct JsonMember;

struct JsonNode {
  enum class Kind { null, flag, number, fraction, text, array, object };

  Kind kind = Kind::null;
  std::size_t at =
      0;  // bytes up to and with the value's end; of arrays and objects, with their first bracket
  bool flag = false;
  std::int64_t number = 0;  // what lies beyond 64 bits is the largest number
  std::string text;
  std::vector<JsonNode> entries;    // of an array
  std::vector<JsonMember> members;  // of an object, in their order, repeated names included

  /// "a text", "an array": what the value is, for messages.
  const char* found() const;
};

struct JsonMember {
  std::string name;
  std::size_t at = 0;
  JsonNode value;
};

class JsonTree {
 public:
  /// Reads one value. `text` outlives the tree. Throws RecordError for what is not JSON, and for values that
  /// lie deeper in each other than those of any record.
  explicit JsonTree(std::string_view text);

  const JsonNode& root() const { return root_; }

  /// Throws RecordError with the place of `at`.
  [[noreturn]] void fail(std::size_t at, const std::string& problem) const;

 private:
  std::string_view text_;
  JsonNode root_;
};

}  // namespace airsync

#endif
