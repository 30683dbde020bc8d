#include "cli/Record.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/core.h>
#include <memory>
#include <system_error>
#include <variant>

#include "cli/ExitError.h"
#include "cli/output/Displayable.h"

namespace airsync {

namespace {

constexpr std::size_t kLargestRecord = 1024UL * 1024UL;
// What a request leaves for one change, less the frame around it.
constexpr std::size_t kLargestContents = 9400;

[[noreturn]] void fail(const std::string& where, const std::string& cause, const std::string& advice) {
  throw ExitError(ExitCode::kUsage, {.kind = ErrorKind::item,
                                     .operation = "reading the record",
                                     .subject = where,
                                     .cause = cause,
                                     .advice = advice});
}

struct Closer {
  void operator()(std::FILE* file) const {
    if (file != stdin) static_cast<void>(std::fclose(file));  // it was only read
  }
};

std::string readAll(const std::string& file, const std::string& name) {
  const std::unique_ptr<std::FILE, Closer> stream(file == "-" ? stdin : std::fopen(file.c_str(), "rbe"));
  if (!stream)
    fail(name, std::generic_category().message(errno),
         "Name a file with one JSON object, or - for standard input.");
  std::string text;
  std::array<char, 65536> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), stream.get())) {
    text.append(buffer.data(), count);
    if (text.size() > kLargestRecord) fail(name, "it is larger than 1 MiB", "Shorten it.");
  }
  if (std::ferror(stream.get()) != 0) fail(name, std::generic_category().message(errno), "Check the file.");
  return text;
}

// Bytes of the texts of a record; everything else is small.
template <typename Record>
std::size_t textBytes(const FieldValues<Record>& values) {
  std::size_t size = 0;
  for (std::size_t field = 0; field < values.table().size(); ++field) {
    if (const auto* text = values.template get<std::string>(field)) size += text->size();
    if (const auto* list = values.template get<List>(field)) size += packList(*list).size();
    if (const auto* people = values.template get<std::vector<Attendee>>(field)) {
      size += packAttendees(*people).size();
    }
  }
  return size;
}

// What the parts of a series take beside their texts, roughly.
constexpr std::size_t kBytesOfAnException = 90;

std::size_t bytesOf(const ItemValue& item) {
  if (const auto* contact = std::get_if<Contact>(&item)) return textBytes(*contact);
  const auto* event = std::get_if<Event>(&item);
  if (event == nullptr) return 0;
  std::size_t size = textBytes(event->fields);
  for (const EventException& exception : event->exceptions) {
    size += textBytes(exception) + kBytesOfAnException;
  }
  return size;
}

RecordPatch parse(const std::string& text, AIRSYNC_STACK::DATATYPE dataType) {
  if (dataType == AIRSYNC_STACK::DATATYPE_CALENDAR) return RecordPatch(parseEventPatch(text));
  return RecordPatch(parseContactPatch(text));
}

}  // namespace

bool RecordPatch::names(std::string_view field) const {
  return std::visit([field](const auto& patch) { return patch.names(field); }, patch_);
}

void RecordPatch::applyTo(ItemValue& item, bool isNew) const {
  if (const auto* contact = std::get_if<ContactPatch>(&patch_))
    return contact->applyTo(std::get<Contact>(item));
  const auto& patch = std::get<EventPatch>(patch_);
  auto& event = std::get<Event>(item);
  patch.applyTo(event);
  checkEvent(event, patch, isNew);
}

RecordPatch readRecord(const std::string& file, AIRSYNC_STACK::DATATYPE dataType) {
  const std::string name = file == "-" ? "from standard input" : file;
  const std::string text = readAll(file, name);
  try {
    return parse(text, dataType);
  } catch (const RecordError& error) {
    fail(fmt::format("{}, line {}, column {}", name, error.line(), error.column()), error.what(),
         "Correct it and run the command again; nothing was changed.");
  }
}

void noteIfTooLarge(const ItemValue& item, Output& output) {
  const std::size_t size = bytesOf(item);
  if (size <= kLargestContents) return;
  output.note(
      fmt::format("the item holds {} bytes, and a request has room for about {}: "
                  "it will be set aside when it is synchronised",
                  size, kLargestContents));
}

}  // namespace airsync
