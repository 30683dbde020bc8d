// An input iterator for the JSON parser that tells how far it has read.
#ifndef AIRSYNC_FORMATS_JSON_POSITION_H
#define AIRSYNC_FORMATS_JSON_POSITION_H

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

namespace airsync {

/// The text being read, and the place up to which it has been read.
class JsonPosition {
 public:
  explicit JsonPosition(std::string_view text) : text_(text) {}

  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    Iterator(JsonPosition* owner, std::size_t offset) : owner_(owner), offset_(offset) {}
    reference operator*() const { return owner_->text_[offset_]; }
    Iterator& operator++() {
      owner_->read_ = std::max(owner_->read_, ++offset_);
      return *this;
    }
    Iterator operator++(int) {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const Iterator& left, const Iterator& right) {
      return left.offset_ == right.offset_;
    }
    friend bool operator!=(const Iterator& left, const Iterator& right) { return !(left == right); }

   private:
    JsonPosition* owner_;
    std::size_t offset_;
  };

  Iterator begin() { return {this, 0}; }
  Iterator end() { return {this, text_.size()}; }

  /// Line and column, from 1, of the last byte that was read.
  std::pair<std::size_t, std::size_t> place() const {
    const std::string_view before = text_.substr(0, read_ == 0 ? 0 : read_ - 1);
    const std::size_t lines = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    const std::size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
    return {lines + 1, before.size() - lineStart + 1};
  }

 private:
  std::string_view text_;
  std::size_t read_ = 0;
};

}  // namespace airsync

#endif
