#include "cli/attachment/Landing.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "cli/ExitError.h"

namespace airsync {

namespace {

[[noreturn]] void fail(ExitCode code, const std::filesystem::path& target, const std::string& cause,
                       const std::string& advice) {
  throw ExitError(code, {.kind = ErrorKind::item,
                         .operation = "writing",
                         .subject = target.string(),
                         .cause = cause,
                         .advice = advice});
}

[[noreturn]] void failWith(int error, const std::filesystem::path& target) {
  fail(ExitCode::kNeedsPerson, target, std::generic_category().message(error),
       "Make room or choose another place with -o FILE; nothing was written.");
}

[[noreturn]] void failExisting(const std::filesystem::path& target) {
  fail(ExitCode::kUsage, target, "there is a file of this name already",
       "Choose another name with -o FILE, or replace that file with --force.");
}

std::string temporaryBeside(const std::filesystem::path& target) {
  return (target.parent_path() / ".airsync-XXXXXX").string();
}

}  // namespace

void checkTarget(const std::filesystem::path& target, bool replace) {
  struct stat status {};
  if (::lstat(target.c_str(), &status) != 0) {
    if (errno == ENOENT) return;
    failWith(errno, target);
  }
  if (S_ISDIR(status.st_mode)) {
    fail(ExitCode::kUsage, target, "it is a directory", "Name a file in it: -o DIRECTORY/FILE.");
  }
  // Replacing it would do away with a device, or with the name of one.
  if (::stat(target.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    fail(ExitCode::kUsage, target, "it is no ordinary file", "Name a new file, or - for standard output.");
  }
  if (!replace) failExisting(target);
}

Landing::Landing(const std::filesystem::path& target, std::size_t room)
    : target_(target), temporary_(temporaryBeside(target)) {
  file_ = Descriptor(::mkostemp(temporary_.data(), O_CLOEXEC));  // exclusively: it follows no link
  if (!file_.valid()) {
    temporary_.clear();
    failWith(errno, target_);
  }
  const int error = ::posix_fallocate(file_.number(), 0, static_cast<off_t>(room));
  void* memory =
      error != 0 ? MAP_FAILED : ::mmap(nullptr, room, PROT_READ | PROT_WRITE, MAP_SHARED, file_.number(), 0);
  if (memory == MAP_FAILED) {
    const int reason = error != 0 ? error : errno;
    ::unlink(temporary_.c_str());
    failWith(reason, target_);
  }
  room_ = {static_cast<unsigned char*>(memory), room};
}

Landing::~Landing() {
  unmap();
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void Landing::unmap() {
  if (!room_.empty()) ::munmap(room_.data(), room_.size());
  room_ = {};
}

void Landing::cut(std::size_t size) {
  unmap();  // before there is less of the file than of the mapping
  if (::ftruncate(file_.number(), static_cast<off_t>(size)) != 0 || ::fsync(file_.number()) != 0) {
    failWith(errno, target_);
  }
}

void Landing::publish(bool replace) {
  give(replace);
  temporary_.clear();
}

void Landing::give(bool replace) const {
  if (replace) {
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) failWith(errno, target_);
    return;
  }
  if (::renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) == 0) return;
  // Not every file system can rename so; a second name is exclusive on all that have links.
  if (errno == EINVAL || errno == ENOSYS) {
    if (::link(temporary_.c_str(), target_.c_str()) == 0) {
      ::unlink(temporary_.c_str());
      return;
    }
  }
  if (errno == EEXIST) failExisting(target_);
  failWith(errno, target_);
}

}  // namespace airsync
