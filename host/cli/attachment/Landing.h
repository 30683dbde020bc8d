// Where a download arrives: room in a file that has no name yet that anybody would look for.
#ifndef AIRSYNC_CLI_ATTACHMENT_LANDING_H
#define AIRSYNC_CLI_ATTACHMENT_LANDING_H

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>

#include "cli/config/Descriptor.h"

namespace airsync {

/// A temporary file (mode 0600) with room for a number of bytes, mapped into memory. The room is allocated on
/// the disk beforehand, so that a full disk is an error before the download and no fatal signal during it.
///
/// The file goes with the object, unless it was given its name by then. A process that is killed may leave
/// it: it is called ".airsync-XXXXXX".
///
/// Throws ExitError (kNeedsPerson), naming the file.
class Landing {
 public:
  /// In the directory of the file that it is going to be. `room` is not 0.
  Landing(const std::filesystem::path& target, std::size_t room);
  ~Landing();
  Landing(const Landing&) = delete;
  Landing& operator=(const Landing&) = delete;

  std::span<unsigned char> room() const { return room_; }

  /// Keeps the first `size` bytes, as they are on the disk now. There is no room any more.
  void cut(std::size_t size);

  /// After cut: gives the file its name. Without `replace` another file of that name is an error (kUsage),
  /// and stays.
  void publish(bool replace);

 private:
  void give(bool replace) const;
  void unmap();

  std::filesystem::path target_;
  std::string temporary_;  // empty when the file has its name
  Descriptor file_;
  std::span<unsigned char> room_;
};

/// Throws ExitError (kUsage) when `target` is there and may not be replaced, or is no place for a file.
void checkTarget(const std::filesystem::path& target, bool replace);

}  // namespace airsync

#endif
