#include "cli/message/MessageFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fmt/core.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "cli/ExitError.h"
#include "cli/config/Descriptor.h"
#include "cli/output/Displayable.h"
#include "cli/session/Interrupt.h"

namespace airsync {

namespace {

constexpr std::size_t kMebibyte = std::size_t{1024} * 1024;

// A file without a name, which goes away with its descriptor.
int openUnnamed() {
  const char* set = std::getenv("TMPDIR");
  std::string name = std::string(set != nullptr && *set != '\0' ? set : "/tmp") + "/airsync-XXXXXX";
  const int file = ::mkostemp(name.data(), O_CLOEXEC);
  if (file >= 0) ::unlink(name.c_str());
  return file;
}

bool writeAll(int descriptor, const char* bytes, std::size_t count) {
  while (count != 0) {
    const ssize_t written = ::write(descriptor, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

enum class Spooled { all, tooMuch, unreadable, unwritable, interrupted };

Spooled spool(int from, int to, std::size_t largest) {
  std::array<char, 65536> buffer{};
  for (std::size_t total = 0;;) {
    if (Interrupt::requested()) return Spooled::interrupted;
    const ssize_t count = ::read(from, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return Spooled::unreadable;
    if (count == 0) return Spooled::all;
    total += static_cast<std::size_t>(count);
    if (total > largest) return Spooled::tooMuch;
    if (!writeAll(to, buffer.data(), static_cast<std::size_t>(count))) return Spooled::unwritable;
  }
}

std::string tooLarge(std::size_t largest) {
  return fmt::format("it is larger than {} MiB", largest / kMebibyte);
}

constexpr const char* kSmaller = "Send less at a time: leave an attachment out.";

}  // namespace

void MessageFile::fail(const std::string& cause, const std::string& advice) const {
  throw ExitError(
      ExitCode::kUsage,
      {.kind = ErrorKind::item, .operation = "reading", .subject = name_, .cause = cause, .advice = advice});
}

MessageFile::MessageFile(const std::string& file, std::size_t largest)
    : name_(file == "-" ? "the message from standard input" : file) {
  open(file, largest);
  try {
    map(largest);
  } catch (...) {
    if (data_ != nullptr) ::munmap(const_cast<unsigned char*>(data_), size_);
    throw;
  }
}

MessageFile::~MessageFile() {
  guard_.reset();
  ::munmap(const_cast<unsigned char*>(data_), size_);
}

void MessageFile::open(const std::string& file, std::size_t largest) {
  Descriptor source(file == "-" ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                : ::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status = {};
  if (!source.valid() || ::fstat(source.number(), &status) != 0) {
    fail(std::generic_category().message(errno),
         "Name a file with an Internet message, or - for standard input.");
  }
  if (S_ISDIR(status.st_mode)) fail("it is a directory", "Name a file with an Internet message.");
  if (file != "-" && S_ISREG(status.st_mode)) {
    file_ = std::move(source);
    return;
  }
  Descriptor unnamed(openUnnamed());
  if (!unnamed.valid()) {
    fail(fmt::format("no temporary file can be made for it: {}", std::generic_category().message(errno)),
         "Set TMPDIR to a directory with room for it.");
  }
  switch (spool(source.number(), unnamed.number(), largest)) {
    case Spooled::all:
      file_ = std::move(unnamed);
      return;
    case Spooled::tooMuch:
      fail(tooLarge(largest), kSmaller);
    case Spooled::unreadable:
      fail(std::generic_category().message(errno), "Check where it comes from.");
    case Spooled::unwritable:
      fail(fmt::format("it can't be kept in a temporary file: {}", std::generic_category().message(errno)),
           "Set TMPDIR to a directory with room for it.");
    case Spooled::interrupted:
      throw ExitError(ExitCode::kInterrupted, "interrupted before anything was sent");
  }
}

void MessageFile::map(std::size_t largest) {
  struct stat status = {};
  if (::fstat(file_.number(), &status) != 0) fail(std::generic_category().message(errno), "Check the file.");
  if (status.st_size == 0) fail("it is empty", "Name a file with an Internet message.");
  if (static_cast<std::size_t>(status.st_size) > largest) fail(tooLarge(largest), kSmaller);
  const auto size = static_cast<std::size_t>(status.st_size);
  void* mapping = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file_.number(), 0);
  if (mapping == MAP_FAILED) fail(std::generic_category().message(errno), "Copy it to another file system.");
  data_ = static_cast<const unsigned char*>(mapping);
  size_ = size;
  time_ = status.st_mtim;
  guard_.emplace(data_, size_, name_);
  const std::string why = whyNoMessage({reinterpret_cast<const char*>(data_), size_});
  if (!why.empty()) fail(why, "An Internet message begins with lines such as \"To: ann@example.com\".");
}

bool MessageFile::changed() const {
  struct stat now = {};
  if (::fstat(file_.number(), &now) != 0) return true;
  return static_cast<std::size_t>(now.st_size) != size_ || now.st_mtim.tv_sec != time_.tv_sec ||
         now.st_mtim.tv_nsec != time_.tv_nsec;
}

std::string whyNoMessage(std::string_view bytes) {
  const auto isName = [](char c) { return c > ' ' && c < '\x7f' && c != ':'; };
  if (bytes.starts_with("From ")) {
    return "it begins with a \"From \" line, as messages do within a mailbox file: leave that line out";
  }
  const auto* end = std::find_if_not(bytes.begin(), bytes.end(), isName);
  if (end != bytes.begin() && end != bytes.end() && *end == ':') return {};
  return "it does not begin with a header line";
}

}  // namespace airsync
