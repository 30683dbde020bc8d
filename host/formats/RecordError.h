// What is said of a text that is no record.
#ifndef AIRSYNC_FORMATS_RECORD_ERROR_H
#define AIRSYNC_FORMATS_RECORD_ERROR_H

#include <cstddef>
#include <stdexcept>
#include <string>

namespace airsync {

/// what() says what is wrong with which field; the place is where reading had come to, both numbers counted
/// from 1, the column in bytes.
class RecordError : public std::runtime_error {
 public:
  RecordError(const std::string& what, std::size_t line, std::size_t column)
      : std::runtime_error(what), line_(line), column_(column) {}

  std::size_t line() const { return line_; }
  std::size_t column() const { return column_; }

 private:
  std::size_t line_;
  std::size_t column_;
};

}  // namespace airsync

#endif
