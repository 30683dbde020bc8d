#include "cli/attachment/FileName.h"

#include <algorithm>
#include <cctype>
#include <iterator>

#include "cli/output/Displayable.h"

namespace airsync {

namespace {

constexpr std::size_t kLongest = 200;  // bytes; file systems take 255
constexpr std::size_t kLongestExtension = 16;
constexpr std::string_view kForbidden = "/\\:*?\"<>|";

// Names of devices, whatever follows them after a dot, on systems to which the file may be copied.
constexpr std::string_view kDevices[] = {
    "CON",    "PRN",       "AUX",       "NUL",       "COM1",      "COM2",      "COM3",     "COM4",
    "COM5",   "COM6",      "COM7",      "COM8",      "COM9",      "LPT1",      "LPT2",     "LPT3",
    "LPT4",   "LPT5",      "LPT6",      "LPT7",      "LPT8",      "LPT9",      "CONIN$",   "CONOUT$",
    "CLOCK$", "COM\u00b9", "COM\u00b2", "COM\u00b3", "LPT\u00b9", "LPT\u00b2", "LPT\u00b3"};

bool isDevice(std::string_view name) {
  std::string stem(name.substr(0, name.find('.')));
  stem.erase(stem.find_last_not_of(' ') + 1);
  std::transform(stem.begin(), stem.end(), stem.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return std::find(std::begin(kDevices), std::end(kDevices), stem) != std::end(kDevices);
}

std::string_view trimmed(std::string_view name) {
  const std::size_t begin = name.find_first_not_of(" .");
  if (begin == std::string_view::npos) return {};
  return name.substr(begin, name.find_last_not_of(" .") - begin + 1);
}

// At most `length` bytes; no character is cut apart.
std::string_view cut(std::string_view text, std::size_t length) {
  if (text.size() <= length) return text;
  while (length != 0 && (static_cast<unsigned char>(text[length]) & 0xc0) == 0x80) --length;
  return text.substr(0, length);
}

std::string shortened(std::string_view name) {
  if (name.size() <= kLongest) return std::string(name);
  const std::size_t dot = name.rfind('.');
  const bool hasExtension = dot != std::string_view::npos && name.size() - dot <= kLongestExtension;
  const std::string_view extension = hasExtension ? name.substr(dot) : std::string_view();
  return std::string(cut(name, kLongest - extension.size())) + std::string(extension);
}

}  // namespace

std::string safeFileName(std::string_view displayName) {
  std::string shown = displayable(displayName);
  std::replace_if(
      shown.begin(), shown.end(), [](char c) { return kForbidden.find(c) != std::string_view::npos; }, '_');
  std::string name(trimmed(shortened(trimmed(shown))));
  if (name.empty()) return "attachment";
  if (name.front() == '-' || name.front() == '~' || isDevice(name)) name.insert(name.begin(), '_');
  return name;
}

}  // namespace airsync
