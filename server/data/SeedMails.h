// The mails of a new data file: of every age, in Inbox, Sent Items, Deleted Items and user folders, some with
// attachments, some with meeting requests.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/Dates.h"

namespace demoserver {

struct SeedAttachment {
  std::string name;
  std::string type;
  std::string content;
  int method = 1;  // 5: the content is a message
};

// Moving JSON throws nothing, though it does not say so.
// NOLINTNEXTLINE(bugprone-exception-escape)
struct SeedMail {
  std::string folder;
  nlohmann::json record;  // without its attachments
  std::vector<SeedAttachment> attachments;
};

// The mail of this number: one of the many that one seed can give before one moment.
SeedMail seedMail(std::uint64_t seed, int number, Moment now);

// The attachments of the mail of this number: one to three of a cycle of all sorts.
std::vector<SeedAttachment> seedAttachments(int number);

}  // namespace demoserver
