#include "transport/RepeatRule.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace airsync {

namespace {

constexpr std::array<std::string_view, 4> kAskingCommands = {
    "FolderSync",
    "GetAttachment",
    "GetHierarchy",
    "GetItemEstimate",
};

// "Sync" in "POST /service?Cmd=Sync&User=ann HTTP/1.1"; empty where the line names no command.
std::string_view commandOf(std::string_view line) {
  constexpr std::string_view kName = "Cmd=";
  line = line.substr(0, line.rfind(' '));
  const std::size_t query = line.find('?');
  if (query == std::string_view::npos) return {};
  line.remove_prefix(query + 1);
  if (!line.starts_with(kName)) return {};
  line.remove_prefix(kName.size());
  return line.substr(0, line.find('&'));
}

// Walks over the tokens of a WBXML document as requests have them: tags without attributes, texts, opaque
// bytes and code pages.
class Walk {
 public:
  explicit Walk(std::span<const UINT8> document) : rest_(document) {}

  // Whether the document was understood to its end, and holds none of the elements that change something.
  bool findsNoChange() {
    if (!skipHead()) return false;
    while (!rest_.empty()) {
      if (!skipToken()) return false;
    }
    return true;
  }

 private:
  static constexpr UINT8 kSwitchPage = 0x00, kEnd = 0x01, kText = 0x03, kTableText = 0x83, kOpaque = 0xC3;
  static constexpr UINT8 kAttributes = 0x80, kTagBits = 0x3F, kFirstTag = 0x05;
  static constexpr UINT8 kSyncPage = 0, kAdd = 0x07, kChange = 0x08, kDelete = 0x09;

  bool take(UINT8& byte) {
    if (rest_.empty()) return false;
    byte = rest_.front();
    rest_ = rest_.subspan(1);
    return true;
  }

  bool takeNumber(std::uint64_t& number) {
    number = 0;
    UINT8 byte = 0;
    for (int count = 0; count < 5; ++count) {
      if (!take(byte)) return false;
      number = number << 7U | (byte & 0x7FU);
      if ((byte & 0x80U) == 0) return true;
    }
    return false;
  }

  bool skip(std::uint64_t count) {
    if (count > rest_.size()) return false;
    rest_ = rest_.subspan(static_cast<std::size_t>(count));
    return true;
  }

  bool skipCounted() {
    std::uint64_t length = 0;
    return takeNumber(length) && skip(length);
  }

  // Version, public id, character set and string table.
  bool skipHead() {
    std::uint64_t number = 0;
    return skip(1) && takeNumber(number) && takeNumber(number) && skipCounted();
  }

  bool skipText() {
    const auto end = std::find(rest_.begin(), rest_.end(), UINT8{0});
    return end != rest_.end() && skip(static_cast<std::uint64_t>(end - rest_.begin()) + 1);
  }

  bool skipToken() {
    UINT8 token = 0;
    std::uint64_t offset = 0;
    take(token);
    switch (token) {
      case kSwitchPage:
        return take(page_);
      case kEnd:
        return true;
      case kText:
        return skipText();
      case kTableText:
        return takeNumber(offset);
      case kOpaque:
        return skipCounted();
      default:
        return isHarmlessTag(token);
    }
  }

  bool isHarmlessTag(UINT8 token) const {
    const auto tag = static_cast<UINT8>(token & kTagBits);
    if ((token & kAttributes) != 0 || tag < kFirstTag) return false;
    return page_ != kSyncPage || (tag != kAdd && tag != kChange && tag != kDelete);
  }

  std::span<const UINT8> rest_;
  UINT8 page_ = kSyncPage;
};

}  // namespace

bool changesNothing(std::string_view head, std::span<const UINT8> body) {
  const std::string_view line = head.substr(0, head.find('\r'));
  if (line.starts_with("OPTIONS ")) return true;
  const std::string_view command = commandOf(line);
  if (std::find(kAskingCommands.begin(), kAskingCommands.end(), command) != kAskingCommands.end()) {
    return true;
  }
  return command == "Sync" && Walk(body).findsNoChange();
}

}  // namespace airsync
