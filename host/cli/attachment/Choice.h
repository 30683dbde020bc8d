// Which attachment of a mail is meant, and whether it can be asked for at all.
#ifndef AIRSYNC_CLI_ATTACHMENT_CHOICE_H
#define AIRSYNC_CLI_ATTACHMENT_CHOICE_H

#include <cstddef>
#include <optional>
#include <string>

#include "store/Mail.h"

namespace airsync {

/// An attachment as it can be downloaded.
struct ChosenAttachment {
  std::size_t number = 0;   // from 1
  std::string handle;       // fit for a request line
  std::size_t size = 0;     // the most that may come: from 1 to kLargestAttachment
  std::string displayName;  // as the sender wrote it
};

inline constexpr std::size_t kLargestAttachment = std::size_t{1} << 30U;

/// The attachment of that number, or the only one. `subject` is what errors call the mail, and `fetch` the
/// command that asks the server for it anew.
///
/// Throws ExitError: kUsage when there are none, several and no number, or none of that number; kServer when
/// the server tells no handle or no size for it, or none with which it could be asked for.
ChosenAttachment chooseAttachment(const Mail& mail, std::optional<int> number, const std::string& subject,
                                  const std::string& fetch);

}  // namespace airsync

#endif
