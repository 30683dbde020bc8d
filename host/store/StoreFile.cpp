#include "store/StoreFile.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "support/Error.h"

namespace airsync {
namespace {

constexpr std::string_view kMagic("SQLite format 3\0", 16);
constexpr std::size_t kHeaderSize = 100;
constexpr std::size_t kApplicationIdOffset = 68;  // big-endian, 4 bytes
constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& cause,
                       const std::string& advice) {
  throw Error({.operation = "opening the store", .subject = file.string(), .cause = cause, .advice = advice});
}

[[noreturn]] void failWithErrno(const std::filesystem::path& file) {
  const int error = errno;
  fail(file, openFailure(error),
       error == ELOOP ? "Move the link away, or the file that it leads to here."
                      : "Make the file and its directory readable and writable for you.");
}

class Descriptor {
 public:
  explicit Descriptor(int value) : value_(value) {}
  ~Descriptor() {
    if (value_ >= 0) ::close(value_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return value_; }

 private:
  int value_;
};

bool beginsLikeStore(const Descriptor& descriptor) {
  std::array<unsigned char, kHeaderSize> header = {};
  const ssize_t count = ::pread(descriptor.get(), header.data(), header.size(), 0);
  if (count == 0) return true;  // made, but not filled yet
  if (count != static_cast<ssize_t>(header.size())) return false;
  if (std::memcmp(header.data(), kMagic.data(), kMagic.size()) != 0) return false;
  std::uint32_t id = 0;
  for (std::size_t index = 0; index < 4; ++index) id = id << 8 | header.at(kApplicationIdOffset + index);
  return id == kApplicationId;
}

}  // namespace

void makePrivateDirectory(const std::filesystem::path& directory) {
  std::error_code unreadable;  // mkdir tells why, then
  if (directory.empty() || std::filesystem::is_directory(directory, unreadable)) return;
  makePrivateDirectory(directory.parent_path());
  if (::mkdir(directory.c_str(), S_IRWXU) == 0) {
    // The mode given to mkdir is cut by the umask; a directory that its owner can't enter would be no use.
    if (::chmod(directory.c_str(), S_IRWXU) == 0) return;
  } else if (errno == EEXIST) {
    if (std::filesystem::is_directory(directory, unreadable)) return;
    fail(directory, "it is no directory", "Move it out of the way.");
  }
  failWithErrno(directory);
}

int openStateFile(const std::filesystem::path& file, int flags) {
  return ::open(file.c_str(), flags | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly);
}

std::string openFailure(int error) {
  return error == ELOOP ? "it is a symbolic link, and these are not followed"
                        : std::generic_category().message(error);
}

void prepareStoreFile(const std::filesystem::path& file) {
  makePrivateDirectory(file.parent_path());
  const Descriptor descriptor(openStateFile(file, O_RDWR | O_CREAT));
  if (descriptor.get() < 0) failWithErrno(file);
  struct stat status = {};
  if (::fstat(descriptor.get(), &status) != 0) failWithErrno(file);
  if (!S_ISREG(status.st_mode)) fail(file, "it is no regular file", "Choose another place for the state.");
  if (!beginsLikeStore(descriptor)) {
    fail(file, "it is damaged, or of another program",
         "Move it aside; the next synchronisation makes a new one and fetches everything again.");
  }
  if ((status.st_mode & ALLPERMS) != kOwnerOnly && ::fchmod(descriptor.get(), kOwnerOnly) != 0) {
    failWithErrno(file);
  }
}

}  // namespace airsync
