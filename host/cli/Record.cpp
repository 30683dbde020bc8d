#include "cli/Record.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/core.h>
#include <memory>
#include <type_traits>
#include <variant>

#include "cli/ExitError.h"
#include "cli/output/Displayable.h"

namespace airsync {

namespace {

constexpr std::size_t kLargestRecord = 1024UL * 1024UL;
// What a request leaves for one change, less the frame around it.
constexpr std::size_t kLargestContents = 9400;

[[noreturn]] void fail(const std::string& where, const std::string& cause, const std::string& advice) {
  ErrorStory story;
  story.kind = ErrorKind::item;
  story.operation = "reading the record";
  story.subject = where;
  story.cause = cause;
  story.advice = advice;
  throw ExitError(ExitCode::kUsage, std::move(story));
}

struct Closer {
  void operator()(std::FILE* file) const {
    if (file != stdin) std::fclose(file);
  }
};

std::string readAll(const std::string& file, const std::string& name) {
  const std::unique_ptr<std::FILE, Closer> stream(file == "-" ? stdin : std::fopen(file.c_str(), "rbe"));
  if (!stream) fail(name, std::strerror(errno), "Name a file with one JSON object, or - for standard input.");
  std::string text;
  std::array<char, 65536> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), stream.get())) {
    text.append(buffer.data(), count);
    if (text.size() > kLargestRecord) fail(name, "it is larger than 1 MiB", "Shorten it.");
  }
  if (std::ferror(stream.get()) != 0) fail(name, std::strerror(errno), "Check the file.");
  return text;
}

}  // namespace

ContactPatch readRecord(const std::string& file) {
  const std::string name = file == "-" ? "from standard input" : file;
  const std::string text = readAll(file, name);
  try {
    return parseContactPatch(text);
  } catch (const RecordError& error) {
    fail(fmt::format("{}, line {}, column {}", name, error.line(), error.column()), error.what(),
         "Correct it and run the command again; nothing was changed.");
  }
}

void noteIfTooLarge(const Contact& contact, Output& output) {
  std::size_t size = 0;
  for (std::size_t field = 0; field < Contact::kFields; ++field) {
    if (const auto* text = contact.get<std::string>(field)) size += text->size();
    if (const auto* list = contact.get<Contact::List>(field)) size += packList(*list).size();
  }
  if (size <= kLargestContents) return;
  output.note(
      fmt::format("the item holds {} bytes, and a request has room for about {}: "
                  "it will be set aside when it is synchronised",
                  size, kLargestContents));
}

}  // namespace airsync
