// An HTTP request and its answer, as the rest of the server sees them.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace demoserver {

struct HttpRequest {
  std::string method;
  std::string path;                          // without the query
  std::map<std::string, std::string> query;  // decoded; of a repeated name the first counts
  std::string authorization;
  std::string body;

  // The query's value; empty when it is not there.
  const std::string& parameter(const std::string& name) const {
    static const std::string none;
    const auto found = query.find(name);
    return found == query.end() ? none : found->second;
  }
};

struct HttpReply {
  int status = 200;
  std::string contentType;  // no header line when it is empty
  std::string body;
  std::vector<std::pair<std::string, std::string>> headers;

  static HttpReply text(int status, std::string_view sentence) {
    return {status, "text/plain; charset=utf-8", std::string(sentence) + "\n", {}};
  }
};

// Splits "/path?name=value&..." and undoes its percent encoding. False for a broken one.
bool parseTarget(std::string_view target, HttpRequest& request);

}  // namespace demoserver
