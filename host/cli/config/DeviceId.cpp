#include "cli/config/DeviceId.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <fmt/core.h>
#include <optional>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include "cli/ExitError.h"
#include "cli/config/Descriptor.h"
#include "store/StoreFile.h"

namespace airsync {

namespace {

constexpr std::size_t kRandomBytes = 16;
constexpr std::size_t kLongest = 64;  // what a request has room for

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& cause,
                       const std::string& advice) {
  ErrorStory story;
  story.operation = "keeping the device id in";
  story.subject = file.string();
  story.cause = cause;
  story.advice = advice;
  throw ExitError(ExitCode::kNeedsPerson, std::move(story));
}

[[noreturn]] void failWithErrno(const std::filesystem::path& file) {
  fail(file, openFailure(errno), "Make the file readable and its directory writable.");
}

bool isIdCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::optional<std::string> read(const std::filesystem::path& file) {
  const Descriptor descriptor(openStateFile(file, O_RDONLY));
  if (!descriptor.valid()) {
    if (errno == ENOENT) return std::nullopt;
    failWithErrno(file);
  }
  std::array<char, kLongest + 2> buffer{};
  const ssize_t count = ::read(descriptor.number(), buffer.data(), buffer.size());
  if (count < 0) failWithErrno(file);
  std::string id(buffer.data(), static_cast<std::size_t>(count));
  if (!id.empty() && id.back() == '\n') id.pop_back();
  if (id.empty() || id.size() > kLongest || !std::all_of(id.begin(), id.end(), isIdCharacter)) {
    fail(file, "it does not hold a device id",
         "Delete the file (the server then sees a new device), or set `device_id` in the configuration.");
  }
  return id;
}

std::string makeId(const std::filesystem::path& file) {
  std::array<unsigned char, kRandomBytes> bytes{};
  if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) failWithErrno(file);
  std::string id;
  for (const unsigned char byte : bytes) id += fmt::format("{:02x}", byte);
  return id;
}

// Written whole under another name first: whoever finds the file finds an identifier in it.
void write(const std::filesystem::path& file, const std::string& id) {
  const std::string temporary = fmt::format("{}.{}", file.string(), ::getpid());
  ::unlink(temporary.c_str());  // what an earlier process of this number left
  const Descriptor descriptor(openStateFile(temporary, O_WRONLY | O_CREAT | O_EXCL));
  const std::string line = id + "\n";
  const bool written =
      descriptor.valid() &&
      ::write(descriptor.number(), line.data(), line.size()) == static_cast<ssize_t>(line.size()) &&
      ::fsync(descriptor.number()) == 0;
  // Unlike rename, link leaves another process's file alone.
  const bool linked = written && (::link(temporary.c_str(), file.c_str()) == 0 || errno == EEXIST);
  const int error = errno;
  ::unlink(temporary.c_str());
  errno = error;
  if (!linked) failWithErrno(file);
}

}  // namespace

std::string keptDeviceId(const std::filesystem::path& file) {
  if (const auto kept = read(file)) return *kept;
  write(file, makeId(file));
  if (const auto kept = read(file)) return *kept;
  fail(file, "it disappeared again", "Run airsync again.");
}

}  // namespace airsync
