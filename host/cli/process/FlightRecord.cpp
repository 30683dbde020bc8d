#include "cli/process/FlightRecord.h"

#include <algorithm>

namespace airsync {

std::string_view commandIn(std::string_view head) {
  constexpr std::string_view kName = "Cmd=";
  const std::string_view line = head.substr(0, head.find('\r'));
  const std::size_t begin = line.find(kName);
  if (begin == std::string_view::npos) return line.substr(0, line.find(' '));
  const std::string_view rest = line.substr(begin + kName.size());
  return rest.substr(0, rest.find_first_of("& "));
}

}  // namespace airsync
