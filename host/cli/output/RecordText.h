// A record as people read it.
#ifndef AIRSYNC_CLI_OUTPUT_RECORD_TEXT_H
#define AIRSYNC_CLI_OUTPUT_RECORD_TEXT_H

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace airsync {

/// One line per field, "Name: value"; further lines of a text and the fields of a part of the record are
/// indented. Parts of which there may be several are numbered from 1. Displayable.
std::vector<std::string> recordLines(const nlohmann::ordered_json& record);

}  // namespace airsync

#endif
