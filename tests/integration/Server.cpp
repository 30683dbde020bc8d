#include "integration/Server.h"

#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <netinet/in.h>
#include <signal.h>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "formats/Base64.h"

namespace airsync::integration {

namespace {

std::string authorization(const std::string& password) {
  const std::string credentials = "DEMO/demo:" + password;
  return "Authorization: Basic " +
         base64Of({reinterpret_cast<const std::uint8_t*>(credentials.data()), credentials.size()}) + "\r\n";
}

std::string percentEncoded(const std::string& text) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    encoded += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return encoded;
}

std::string talk(int port, const std::string& request) {
  const int connection = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
    ::close(connection);
    throw std::runtime_error("the demo server can't be reached");
  }
  for (std::size_t sent = 0; sent < request.size();) {
    const ssize_t count = ::send(connection, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
    if (count <= 0) break;
    sent += static_cast<std::size_t>(count);
  }
  std::string response;
  std::array<char, 65536> buffer{};
  ssize_t count = 0;
  while ((count = ::recv(connection, buffer.data(), buffer.size(), 0)) > 0) {
    response.append(buffer.data(), static_cast<std::size_t>(count));
  }
  ::close(connection);
  return response;
}

std::string itemTarget(const std::string& folder, const std::string& id) {
  std::string target = "/admin/items?folder=" + percentEncoded(folder);
  if (!id.empty()) target += "&id=" + percentEncoded(id);
  return target;
}

}  // namespace

Server::Server(const std::filesystem::path& directory, const std::vector<std::string>& switches, int port) {
  Process::Start start;
  start.command = {AIRSYNC_DEMO_SERVER, "--port", std::to_string(port), "--data",
                   (directory / "server.db").string()};
  start.command.insert(start.command.end(), switches.begin(), switches.end());
  start.environment["PATH"] = "/usr/bin:/bin";
  start.directory = directory;
  process_ = std::make_unique<Process>(start);
  // Ends with the line that the server prints, or with the server.
  std::string line;
  while (line.find('\n') == std::string::npos) {
    if (!process_->running()) throw std::runtime_error("the demo server ended: " + process_->errors());
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    line = process_->output();
  }
  port_ = std::stoi(line.substr(line.rfind(':') + 1));
}

void Server::usePassword(const std::string& password) { password_ = password; }

void Server::stop() {
  process_->signal(SIGTERM);
  process_->wait();
}

void Server::kill() {
  process_->signal(SIGKILL);
  process_->wait();
}

std::string Server::ask(const std::string& method, const std::string& target, const std::string& body) {
  const std::string response =
      talk(port_, method + " " + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + authorization(password_) +
                      "Connection: close\r\nContent-Type: application/json\r\nContent-Length: " +
                      std::to_string(body.size()) + "\r\n\r\n" + body);
  const std::size_t end = response.find("\r\n\r\n");
  const bool good = response.rfind("HTTP/1.1 20", 0) == 0 && end != std::string::npos;
  if (!good) throw std::runtime_error(method + " " + target + ": " + response);
  return response.substr(end + 4);
}

nlohmann::json Server::request(const std::string& method, const std::string& target,
                               const std::string& body) {
  const std::string content = ask(method, target, body);
  return content.empty() ? nlohmann::json() : nlohmann::json::parse(content);
}

std::map<std::string, nlohmann::json> Server::items(const std::string& folder) {
  std::map<std::string, nlohmann::json> items;
  for (const auto& entry : request("GET", itemTarget(folder, ""))) items[entry.at("id")] = entry.at("record");
  return items;
}

nlohmann::json Server::devices() { return request("GET", "/admin/state").at("devices"); }

void Server::setHabit(const std::string& name, bool on) {
  request("PUT", "/admin/habits", nlohmann::json{{name, on}}.dump());
}

void Server::planFaults(const nlohmann::json& plan) { request("PUT", "/admin/faults", plan.dump()); }

int Server::pickedRequests() { return request("GET", "/admin/faults").at("picked"); }

void Server::forgetKey(const std::string& folder) {
  request("DELETE", "/admin/keys?folder=" + percentEncoded(folder));
}

std::string Server::add(const std::string& folder, const nlohmann::json& record) {
  return request("POST", itemTarget(folder, ""), record.dump()).at("id");
}

void Server::replace(const std::string& folder, const std::string& id, const nlohmann::json& record) {
  request("PUT", itemTarget(folder, id), record.dump());
}

std::string Server::attachment(const std::string& handle) {
  return ask("GET", "/admin/attachment?handle=" + percentEncoded(handle), {});
}

void Server::remove(const std::string& folder, const std::string& id) {
  request("DELETE", itemTarget(folder, id));
}

void Server::removeFolder(const std::string& folder) {
  request("DELETE", "/admin/folders?id=" + percentEncoded(folder));
}

}  // namespace airsync::integration
