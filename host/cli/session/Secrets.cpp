#include "cli/session/Secrets.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "formats/Base64.h"

namespace airsync {

namespace {

using View = std::string_view;

// Fewer characters stand anywhere.
constexpr std::size_t kTelling = 4;

// How far a text holds a secret at its beginning: all of it, or so much as there is of the text.
struct Fit {
  enum class Kind : std::uint8_t { none, begun, whole };
  Kind kind = Kind::none;
  std::size_t length = 0;  // of the text

  Fit behind(std::size_t before) const { return kind == Kind::none ? *this : Fit{kind, length + before}; }
};

constexpr Fit kNone{};

int digitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// The byte that `count` digits at the beginning of `text` stand for.
std::optional<char> byteOf(View text, std::size_t count, int base) {
  if (count == 0 || text.size() < count) return std::nullopt;
  int value = 0;
  for (const char c : text.substr(0, count)) {
    const int digit = digitOf(c);
    if (digit < 0 || digit >= base || value > 0xff) return std::nullopt;
    value = value * base + digit;
  }
  if (value > 0xff) return std::nullopt;
  return static_cast<char>(value);
}

struct EscapeRow {
  View begin;
  std::size_t digits;  // 0: as many as there are before the end
  View end;
  int base;
};

constexpr std::array<EscapeRow, 6> kEscapes = {{
    {"%", 2, "", 16},
    {"=", 2, "", 16},
    {"\\x", 2, "", 16},
    {"\\u", 4, "", 16},
    {"&#x", 0, ";", 16},
    {"&#", 0, ";", 10},
}};
constexpr std::size_t kLongestEscape = 8;

// The length of an escape for `wanted` at the beginning of `text`; 0: there is none.
std::size_t escapeOf(char wanted, View text) {
  for (const EscapeRow& row : kEscapes) {
    if (!text.starts_with(row.begin)) continue;
    const View rest = text.substr(row.begin.size(), kLongestEscape);
    const std::size_t digits = row.digits != 0 ? row.digits : std::min(rest.find(row.end), rest.size());
    const std::optional<char> byte = byteOf(rest, digits, row.base);
    if (byte && *byte == wanted && rest.substr(digits).starts_with(row.end)) {
      return row.begin.size() + digits + row.end.size();
    }
  }
  return 0;
}

// Whether a text that ends here may be the beginning of an escape.
bool mayBeCutEscape(View text) {
  return std::any_of(kEscapes.begin(), kEscapes.end(), [text](const EscapeRow& row) {
    if (text.size() <= row.begin.size()) return row.begin.starts_with(text);
    const View digits = text.substr(row.begin.size());
    const std::size_t most = row.digits != 0 ? row.digits - 1 : 3;
    return text.starts_with(row.begin) && digits.size() <= most &&
           std::all_of(digits.begin(), digits.end(), [](char c) { return digitOf(c) >= 0; });
  });
}

// As it is, or with escapes. A character may stand for itself or begin an escape: both ways are tried.
Fit fitText(View text, View secret) {
  if (secret.empty()) return {Fit::Kind::whole, 0};
  if (text.empty()) return {Fit::Kind::begun, 0};
  const char wanted = secret.front();
  const std::size_t escape = escapeOf(wanted, text);
  const bool itself = text.front() == wanted || (wanted == ' ' && text.front() == '+');
  for (const std::size_t taken : {escape, static_cast<std::size_t>(itself ? 1 : 0)}) {
    if (taken == 0) continue;
    const std::size_t wide =
        text.substr(taken).starts_with('\0') && !secret.substr(1).starts_with('\0') ? 1 : 0;
    const Fit fit = fitText(text.substr(taken + wide), secret.substr(1)).behind(taken + wide);
    if (fit.kind != Fit::Kind::none) return fit;
  }
  if (mayBeCutEscape(text)) return {Fit::Kind::begun, text.size()};
  return kNone;
}

Fit fitDigits(View text, View secret) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < secret.size(); ++i) {
    if (i != 0 && at < text.size() && View(" :-").find(text[at]) != View::npos) ++at;
    const View rest = text.substr(at);
    if (rest.size() < 2) {
      const bool begun = rest.empty() || digitOf(rest.front()) >= 0;
      return begun ? Fit{Fit::Kind::begun, text.size()} : kNone;
    }
    const std::optional<char> byte = byteOf(rest, 2, 16);
    if (!byte || *byte != secret[i]) return kNone;
    at += 2;
  }
  return {Fit::Kind::whole, at};
}

bool isBase64(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         View("+/-_").find(c) != View::npos;
}

// What of a secret's base64 does not depend on its neighbours, when `offset` bytes come before it.
std::string coreAt(View secret, std::size_t offset) {
  const std::string padded = std::string(offset, 'x').append(secret);
  const std::string all = base64Of({reinterpret_cast<const std::uint8_t*>(padded.data()), padded.size()});
  const std::size_t begin = (8 * offset + 5) / 6;
  return all.substr(begin, 8 * padded.size() / 6 - begin);
}

// In the alphabet for addresses two characters are others. What follows may still hold bits of the secret.
Fit fitCore(View text, View core) {
  for (std::size_t i = 0; i < core.size(); ++i) {
    if (i == text.size()) return {Fit::Kind::begun, i};
    const char c = text[i] == '-' ? '+' : text[i] == '_' ? '/' : text[i];
    if (c != core[i]) return kNone;
  }
  std::size_t end = core.size();
  if (end < text.size() && isBase64(text[end])) ++end;
  while (end < text.size() && end < core.size() + 3 && text[end] == '=') ++end;
  return {Fit::Kind::whole, end};
}

// One secret, in all forms.
class Forms {
 public:
  explicit Forms(View secret) : secret_(secret) {
    for (std::size_t offset = 0; offset < cores_.size(); ++offset) {
      cores_[offset] = coreAt(secret, offset);
    }
  }

  // The longest fit of the given kind at the beginning of `text`.
  std::size_t lengthIn(View text, Fit::Kind kind) const {
    std::size_t longest = 0;
    const auto consider = [&](const Fit& fit) {
      if (fit.kind == kind) longest = std::max(longest, fit.length);
    };
    consider(fitText(text, secret_));
    if (2 * secret_.size() >= kTelling) consider(fitDigits(text, secret_));
    for (const std::string& core : cores_) {
      if (core.size() >= kTelling) consider(fitCore(text, core));
    }
    return longest;
  }

 private:
  View secret_;
  std::array<std::string, 3> cores_;
};

using AllForms = std::vector<Forms>;

std::size_t lengthIn(View text, const AllForms& all, Fit::Kind kind) {
  std::size_t longest = 0;
  for (const Forms& forms : all) longest = std::max(longest, forms.lengthIn(text, kind));
  return longest;
}

constexpr View kHidden = "***";
constexpr View kCut = "...";

std::string withoutWhole(View text, const AllForms& all) {
  std::string result;
  while (!text.empty()) {
    const std::size_t length = lengthIn(text, all, Fit::Kind::whole);
    if (length != 0) {
      result += kHidden;
    } else {
      result += text.front();
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return result;
}

// Long texts of a server are cut, and marked so: the cut may go through a secret.
std::string withoutBegun(View text, const AllForms& all) {
  std::string result;
  for (std::size_t cut = text.find(kCut); cut != View::npos; cut = text.find(kCut)) {
    const View before = text.substr(0, cut);
    std::size_t at = 0;
    while (at + kTelling <= before.size() && lengthIn(before.substr(at), all, Fit::Kind::begun) < kTelling) {
      ++at;
    }
    const bool begun = at + kTelling <= before.size();
    result += before.substr(0, begun ? at : before.size());
    if (begun) result += kHidden;
    result += kCut;
    text.remove_prefix(cut + kCut.size());
  }
  return result.append(text);
}

}  // namespace

std::vector<std::string> secretsOf(const std::string& domain, const std::string& user,
                                   const std::string& password) {
  const std::string credentials = domain + "/" + user + ":" + password;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(credentials.data());
  std::vector<std::string> secrets = {password, credentials, base64Of({bytes, credentials.size()})};
  std::sort(secrets.begin(), secrets.end(),
            [](const std::string& left, const std::string& right) { return left.size() > right.size(); });
  return secrets;
}

std::string withoutSecrets(const std::string& text, const std::vector<std::string>& secrets) {
  AllForms all;
  for (const std::string& secret : secrets) {
    if (!secret.empty()) all.emplace_back(secret);
  }
  return withoutBegun(withoutWhole(text, all), all);
}

}  // namespace airsync
