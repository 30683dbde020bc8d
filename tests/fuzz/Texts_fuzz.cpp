// The small text forms: base64, tag paths, identifiers, numbers, times.
#include <cstring>
#include <string>
#include <vector>

#include "document/Base64.h"
#include "document/FieldList.h"
#include "document/Utilities.h"
#include "fuzz/Harness.h"
#include "support/ServerId.h"
#include "support/Time.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_fuzz;

void Base64(const std::string& bytes) {
  std::vector<char> text(4 * ((bytes.size() + 2) / 3) + 1);
  SmlBase64Encode(text.data(), reinterpret_cast<const UINT8*>(bytes.data()), static_cast<int>(bytes.size()));
  Require(std::strlen(text.data()) == text.size() - 1, "an encoded text has its length");
  std::vector<char> back(text.size() / 4 * 3 + 1);
  Require(SmlBase64Decode(back.data(), text.data()), "what was encoded can be decoded");
  Require(std::memcmp(back.data(), bytes.data(), bytes.size()) == 0, "what was encoded comes back");
  const std::string foreign = bytes.c_str();
  std::vector<char> decoded(foreign.size() / 4 * 3 + 2);
  SmlBase64Decode(decoded.data(), foreign.c_str());
}

void Tags(const std::string& text) {
  std::vector<char> tag(text.size() + 1);
  for (const char* rest = text.c_str(); *rest != '\0'; rest = RemoveFirstTag(rest, '/')) {
    GetFirstTag(tag.data(), rest, '/');
    Touch(tag.data());
  }
}

void Identifiers(const std::string& text) {
  const SERVER_ID id = ServerId::fromChar(text.c_str());
  char shown[ServerId::kLength + 1];
  Touch(ServerId::toChar(id, shown));
  Require(ServerId::compare(id, ServerId::fromChar(shown)) == 0, "an identifier comes back");
}

void Numbers(const std::string& text) {
  const UINT32 number = SmlStringToUnsignedInteger(text.c_str());
  char shown[11];
  SmlUnsignedIntegerToString(shown, number);
  Require(SmlStringToUnsignedInteger(shown) == number, "a number comes back");
}

void Times(const std::string& bytes) {
  INT32 parts[7] = {};
  std::memcpy(parts, bytes.data(), bytes.size() < sizeof parts ? bytes.size() : sizeof parts);
  AdjustTime(parts[0], parts[1], parts[2], parts[3], parts[4], parts[5], parts[6]);
  Require(parts[6] == 0 || parts[5] == 60, "milliseconds are gone");
  struct tm time = {};
  time.tm_year = parts[0];
  time.tm_mon = parts[1];
  time.tm_mday = parts[2];
  time.tm_hour = parts[3];
  time.tm_min = parts[4];
  time.tm_sec = parts[5];
  Keep(static_cast<std::uint64_t>(mkgmtime(&time)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::string text = bytes.c_str();
  Base64(bytes);
  Tags(text);
  Identifiers(text);
  Numbers(text);
  Times(bytes);
  return 0;
}
