#include "data/AttachmentStore.h"

#include <array>
#include <cstdio>

namespace demoserver {
namespace {

constexpr std::size_t kMaxNamePart = 64;

bool isPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '-' ||
         c == '_';
}

// The name in characters that a request line can carry, cut to kMaxNamePart.
std::string namePart(std::string_view name) {
  std::string part;
  for (const char c : name) {
    std::array<char, 4> escaped{c};
    if (!isPlain(c))
      static_cast<void>(
          std::snprintf(escaped.data(), escaped.size(), "%%%02x", static_cast<unsigned char>(c)));
    if (part.size() + std::string_view(escaped.data()).size() > kMaxNamePart) break;
    part += escaped.data();
  }
  return part;
}

Attachment readAttachment(Query& row) {
  return {row.text(0), row.text(1), row.text(2), row.text(3), row.text(4)};
}

}  // namespace

std::string AttachmentStore::add(const std::string& item, const std::string& name, const std::string& type,
                                 std::string_view content) {
  std::string handle = "Att/" + std::to_string(database_.nextRevision()) + ":" + namePart(name);
  Query(database_, "INSERT INTO attachments VALUES(?, ?, ?, ?, ?)", handle, item, name,
        type.empty() ? std::string("application/octet-stream") : type, Bytes{content})
      .run();
  return handle;
}

std::optional<Attachment> AttachmentStore::find(const std::string& handle) {
  Query row(database_, "SELECT handle, item, name, type, content FROM attachments WHERE handle = ?", handle);
  if (!row.next()) return std::nullopt;
  return readAttachment(row);
}

std::vector<Attachment> AttachmentStore::list(const std::string& item) {
  Query rows(database_,
             "SELECT handle, item, name, type, content FROM attachments WHERE item = ? ORDER BY rowid", item);
  std::vector<Attachment> attachments;
  while (rows.next()) attachments.push_back(readAttachment(rows));
  return attachments;
}

}  // namespace demoserver
