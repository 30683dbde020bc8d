// GMime's objects and texts with owners. Its functions hand out references that must be given back: every
// result that the caller owns goes into one of these at once.
#pragma once

#include <glib-object.h>
#include <gmime/gmime.h>
#include <memory>
#include <string>
#include <string_view>

namespace demoserver {

struct ObjectRelease {
  void operator()(void* object) const { g_object_unref(object); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, ObjectRelease>;

struct TextRelease {
  void operator()(char* text) const { g_free(text); }
};
using OwnedText = std::unique_ptr<char, TextRelease>;

inline std::string stringOf(const char* text) { return text != nullptr ? text : ""; }

// Must have run before anything else of GMime; more than once does no harm.
void prepareGmime();

// Reads bytes where they are, without a copy. They and the object itself must outlive everything that GMime
// makes of the stream: the contents of a parsed message are views into it.
class ByteSource {
 public:
  explicit ByteSource(std::string_view bytes);

  GMimeStream* stream() const { return stream_.get(); }

 private:
  GByteArray array_;
  Owned<GMimeStream> stream_;
};

// Collects what is written to it.
class ByteSink {
 public:
  ByteSink();

  GMimeStream* stream() const { return stream_.get(); }
  // What was written so far; valid until more is written.
  std::string_view bytes() const;

 private:
  Owned<GMimeStream> stream_;
};

// A head that has not ended after so many bytes is cut there, with all that follows: reading it would cost
// the square of its length.
inline constexpr std::size_t kMaxHead = std::size_t{1024} * 1024;
// Every line that begins with "--" may begin another part, which takes a few bytes here and a thousand
// and more in memory: the message is cut before one too many.
inline constexpr std::size_t kMaxPartLines = 50'000;
// What is parsed of a message.
std::string_view bounded(std::string_view message);

// The message in these bytes; never null, whatever they are.
Owned<GMimeMessage> parseObject(const ByteSource& source);

// The content of a part, with its transfer encoding undone.
std::string contentOf(GMimePart* part);

}  // namespace demoserver
