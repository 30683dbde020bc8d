// Records as the server's own code reads them.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace demoserver {

// The text of a field; empty when the record has none, or something else there.
inline std::string textOf(const nlohmann::json& record, const char* name) {
  const auto found = record.find(name);
  return found != record.end() && found->is_string() ? found->get<std::string>() : std::string();
}

}  // namespace demoserver
