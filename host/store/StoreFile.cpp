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

namespace airsync {
namespace {

constexpr std::string_view kMagic("SQLite format 3\0", 16);
constexpr std::size_t kHeaderSize = 100;
constexpr std::size_t kApplicationIdOffset = 68;  // big-endian, 4 bytes
constexpr const char* kMadeSuffix = ".made";
constexpr const char* kJournalSuffixes[] = {"-wal", "-shm", "-journal"};
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

std::filesystem::path beside(const std::filesystem::path& file, const char* suffix) {
  std::filesystem::path path = file;
  path += suffix;
  return path;
}

// SQLite would wait for a pipe's other end.
void refuseOddJournals(const std::filesystem::path& file) {
  for (const char* suffix : kJournalSuffixes) {
    const std::filesystem::path journal = beside(file, suffix);
    struct stat status = {};
    if (::lstat(journal.c_str(), &status) != 0 || S_ISREG(status.st_mode)) continue;
    fail(journal, S_ISLNK(status.st_mode) ? openFailure(ELOOP) : "it is no regular file",
         "Move it out of the way.");
  }
}

// A store that is to be begun where there is none: somebody has moved the old one away.
int makeStoreFile(const std::filesystem::path& file) {
  ::unlink(beside(file, kMadeSuffix).c_str());
  return openStateFile(file, O_RDWR | O_CREAT);
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
  return ::open(file.c_str(), flags | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kOwnerOnly);
}

bool isRegularFile(int descriptor) {
  struct stat status = {};
  return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

std::string openFailure(int error) {
  return error == ELOOP ? "it is a symbolic link, and these are not followed"
                        : std::generic_category().message(error);
}

void prepareStoreFile(const std::filesystem::path& file) {
  makePrivateDirectory(file.parent_path());
  refuseOddJournals(file);
  int opened = openStateFile(file, O_RDWR);
  if (opened < 0 && errno == ENOENT) opened = makeStoreFile(file);
  const Descriptor descriptor(opened);
  if (descriptor.get() < 0) failWithErrno(file);
  struct stat status = {};
  if (::fstat(descriptor.get(), &status) != 0) failWithErrno(file);
  if (!S_ISREG(status.st_mode)) fail(file, "it is no regular file", "Choose another place for the state.");
  if (!beginsLikeStore(descriptor)) {
    failDamaged(file, "it is damaged, or of another program");
  }
  if (status.st_size == 0 && ::access(beside(file, kMadeSuffix).c_str(), F_OK) == 0) {
    failDamaged(file,
                "it is empty, and it was not: what it held is lost, local changes that were not sent too",
                "Put a copy of it back if there is one. Otherwise move it aside, with the file NAME.db.made "
                "beside it; the "
                "next synchronisation makes a new store and fetches everything again.");
  }
  if ((status.st_mode & ALLPERMS) != kOwnerOnly && ::fchmod(descriptor.get(), kOwnerOnly) != 0) {
    failWithErrno(file);
  }
}

void markStoreMade(const std::filesystem::path& file) {
  const std::filesystem::path mark = beside(file, kMadeSuffix);
  if (::access(mark.c_str(), F_OK) == 0) return;
  const Descriptor descriptor(openStateFile(mark, O_WRONLY | O_CREAT));
  const Descriptor directory(::open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // The store works without the mark, and the next one to open it tries again.
  if (descriptor.get() >= 0 && directory.get() >= 0) ::fsync(directory.get());
}

std::vector<std::filesystem::path> filesOfStore(const std::filesystem::path& file) {
  std::vector<std::filesystem::path> files;
  for (const char* suffix : kJournalSuffixes) files.push_back(beside(file, suffix));
  files.push_back(file);
  files.push_back(beside(file, kMadeSuffix));
  return files;
}

void failDamaged(const std::filesystem::path& file, const std::string& cause, const std::string& advice) {
  throw DamagedStore(
      {.operation = "opening the store", .subject = file.string(), .cause = cause, .advice = advice});
}

}  // namespace airsync
