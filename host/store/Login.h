// Whose mailbox a store is a copy of.
#ifndef AIRSYNC_HOST_STORE_LOGIN_H
#define AIRSYNC_HOST_STORE_LOGIN_H

#include <string>

namespace airsync {

/// Two logins are of one mailbox when all four texts are equal; whoever makes one brings the host to one form
/// before.
struct Login {
  std::string host;
  std::string path;
  std::string user;
  std::string domain;

  friend bool operator==(const Login&, const Login&) = default;
};

}  // namespace airsync

#endif
