#include "http/Message.h"

#include <array>
#include <optional>

namespace demoserver {
namespace {

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::optional<std::string> percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      decoded += text[i];
      continue;
    }
    const int high = text.size() - i > 2 ? hexDigit(text[i + 1]) : -1;
    const int low = high < 0 ? -1 : hexDigit(text[i + 2]);
    if (low < 0) return std::nullopt;
    decoded += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return decoded;
}

constexpr std::array<std::string_view, 8> kParameters = {
    "Cmd", "User", "DeviceId", "DeviceType", "SaveInSent", "ItemId", "CollectionId", "AttachmentName"};

// True if the text begins with "NAME=" of a parameter of the protocol.
bool beginsParameter(std::string_view text) {
  for (const std::string_view name : kParameters)
    if (text.size() > name.size() && text.starts_with(name) && text[name.size()] == '=') return true;
  return false;
}

std::size_t endOfValue(std::string_view query, std::size_t begin) {
  for (std::size_t end = query.find('&', begin); end != std::string_view::npos;
       end = query.find('&', end + 1))
    if (beginsParameter(query.substr(end + 1))) return end;
  return query.size();
}

}  // namespace

std::vector<std::string> HttpRequest::spellings(std::string_view name) const {
  const std::string mark = "&" + std::string(name) + "=";
  const std::string whole = "&" + rawQuery;
  const std::size_t found = whole.find(mark);
  if (found == std::string::npos) return {};
  const std::size_t begin = found + mark.size();
  std::vector<std::string> meanings = {whole.substr(begin, endOfValue(whole, begin) - begin)};
  if (auto decoded = percentDecoded(meanings.front()); decoded && *decoded != meanings.front())
    meanings.push_back(*decoded);
  return meanings;
}

bool parseTarget(std::string_view target, HttpRequest& request) {
  const std::size_t mark = target.find('?');
  request.path = target.substr(0, mark);
  request.rawQuery = mark == std::string_view::npos ? std::string_view() : target.substr(mark + 1);
  std::string_view rest = request.rawQuery;
  while (!rest.empty()) {
    const std::string_view pair = rest.substr(0, rest.find('&'));
    rest.remove_prefix(pair.size() < rest.size() ? pair.size() + 1 : pair.size());
    const std::size_t equals = pair.find('=');
    const auto name = percentDecoded(pair.substr(0, equals));
    const std::string_view value =
        equals == std::string_view::npos ? std::string_view() : pair.substr(equals + 1);
    if (!name) return false;
    request.query.emplace(*name, percentDecoded(value).value_or(std::string(value)));
  }
  return true;
}

}  // namespace demoserver
