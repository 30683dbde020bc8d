// What the server answers to a request, apart from all networking.
#pragma once

#include <string>

#include "data/State.h"
#include "http/Authentication.h"
#include "http/Faults.h"
#include "http/Message.h"
#include "protocol/SyncCommand.h"

namespace demoserver {

struct ServiceOptions {
  Credentials credentials;
  SyncBehaviour behaviour;
  FaultPlan faults;
  bool verbose = false;  // one line per request on standard error
};

struct Answer {
  HttpReply reply;
  Fault fault;  // what is left for the connection to do
};

class Service {
 public:
  // The state must outlive the service.
  Service(State& state, ServiceOptions options) : state_(state), options_(std::move(options)) {}

  // Never throws: a failure of the server itself is answered with 500 and told on standard error.
  Answer answer(const HttpRequest& request);

 private:
  HttpReply route(const HttpRequest& request, Fault& fault);
  HttpReply command(const HttpRequest& request, const Fault& fault);

  State& state_;
  ServiceOptions options_;
};

}  // namespace demoserver
