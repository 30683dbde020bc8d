// The contents of attachments, each under a handle by which clients fetch it.
//
// A handle belongs to one item: it goes along when the item is moved (see Moves), and is gone when the item
// is. Handles are opaque to clients, which write them into a request's query as they are. Those made here
// hold "/", ":" and, for a name that needs it, "%", as the handles of other servers do; but never a space, an
// "&" or a "#", which a request line could not carry.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/Database.h"

namespace demoserver {

struct Attachment {
  std::string handle;
  std::string item;
  std::string name;  // as the message has it: any text, possibly empty
  std::string type;  // "application/pdf"
  std::string content;
};

// The size to announce for content of this size: what base64 with a line break after 76 characters takes, as
// servers do that never look inside. Clients must expect fewer bytes.
constexpr std::size_t announcedSize(std::size_t size) {
  constexpr std::size_t kLine = 76;
  const std::size_t characters = (size + 2) / 3 * 4;
  return characters + (characters + kLine - 1) / kLine * 2;
}

class AttachmentStore {
 public:
  explicit AttachmentStore(Database& database) : database_(database) {}

  // Returns the new handle, of at most 100 characters. An empty type stands for "application/octet-stream".
  std::string add(const std::string& item, const std::string& name, const std::string& type,
                  std::string_view content);

  std::optional<Attachment> find(const std::string& handle);
  // Those of one item, in the order in which they were added.
  std::vector<Attachment> list(const std::string& item);

 private:
  Database& database_;
};

}  // namespace demoserver
