// How the administration answers: JSON, and errors as {"error": sentence}.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "http/Message.h"

namespace demoserver {

inline HttpReply adminAnswer(int status, const nlohmann::json& body) {
  return {status,
          "application/json",
          body.dump(1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n",
          {}};
}

inline HttpReply adminError(int status, const std::string& sentence) {
  return adminAnswer(status, {{"error", sentence}});
}

}  // namespace demoserver
