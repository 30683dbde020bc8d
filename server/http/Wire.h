// The bytes of an answer's head and of a chunked body.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "http/Message.h"

namespace demoserver {

struct Framing {
  bool keepAlive = true;
  bool chunked = false;  // Transfer-Encoding instead of Content-Length
};

std::string wireHead(const HttpReply& reply, const Framing& framing);

// The body in chunks of `size` bytes, the closing one included.
std::string chunked(std::string_view body, std::size_t size);

}  // namespace demoserver
