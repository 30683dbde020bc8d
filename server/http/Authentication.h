// Basic authentication against the one account of this server.
#pragma once

#include <string>
#include <string_view>

namespace demoserver {

struct Credentials {
  std::string domain = "DEMO";
  std::string user = "demo";
  std::string password = "demo";
};

// True if the Authorization line's value names domain "/" user and the password. Takes the same time wherever
// a wrong value differs from the right one.
bool isAuthorized(std::string_view authorization, const Credentials& credentials);

}  // namespace demoserver
