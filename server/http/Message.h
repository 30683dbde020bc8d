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
  std::string rawQuery;                      // as the client wrote it
  std::string authorization;
  std::string body;

  // The query's value; empty when it is not there.
  const std::string& parameter(const std::string& name) const {
    static const std::string none;
    const auto found = query.find(name);
    return found == query.end() ? none : found->second;
  }

  // What the value may mean, the likeliest first; nothing when it is not there. Clients of this protocol
  // write ids and handles into the query without escaping them, others escape them: so the value counts first
  // as it stands, up to the next "&" that a parameter of the protocol follows or the end, then decoded. What
  // can't arrive is a value with a space, a "#", or with "&" and the name of such a parameter and "=" in it.
  std::vector<std::string> spellings(std::string_view name) const;
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

// Splits "/path?name=value&..." and undoes its percent encoding. A value with a broken one stays as it is: it
// was not meant as one. False when a name has a broken one.
bool parseTarget(std::string_view target, HttpRequest& request);

}  // namespace demoserver
