// An input iterator for the JSON parser that tells how far it has read.
#ifndef AIRSYNC_FORMATS_JSON_POSITION_H
#define AIRSYNC_FORMATS_JSON_POSITION_H

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace airsync {

/// The text being read, and how far.
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

  /// How many bytes have been read.
  std::size_t read() const { return read_; }

 private:
  std::string_view text_;
  std::size_t read_ = 0;
};

}  // namespace airsync

#endif
