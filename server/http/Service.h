// What the server answers to a request, apart from all networking.
#pragma once

#include <cstddef>
#include <string>

#include "data/State.h"
#include "http/Authentication.h"
#include "http/Faults.h"
#include "http/Message.h"
#include "protocol/Habits.h"

namespace demoserver {

struct ServiceOptions {
  Credentials credentials;
  Habits habits;
  FaultPlan faults;
  std::string mailAddress = "demo@example.com";  // of the account: what is sent there is delivered here
  bool verbose = false;                          // one line per request on standard error
};

struct Answer {
  HttpReply reply;
  Fault fault;         // what is left for the connection to do
  bool close = false;  // the connection is to end with this answer, which says so
};

inline constexpr std::size_t kMaxDocument = std::size_t{1024} * 1024;      // bytes of a request's document
inline constexpr std::size_t kMaxMessage = std::size_t{64} * 1024 * 1024;  // bytes of a message to send

class Service {
 public:
  // The state must outlive the service.
  Service(State& state, ServiceOptions options) : state_(state), options_(std::move(options)) {}

  // The longest body that a request with this head may have: kMaxMessage for a command that sends a message,
  // with good credentials; otherwise kMaxDocument.
  std::size_t bodyLimit(const HttpRequest& request) const;

  // Never throws: a failure of the server itself is answered with 500 and told on standard error.
  Answer answer(const HttpRequest& request);

 private:
  HttpReply route(const HttpRequest& request, Fault& fault);
  HttpReply command(const HttpRequest& request, const Fault& fault);

  State& state_;
  ServiceOptions options_;
};

}  // namespace demoserver
