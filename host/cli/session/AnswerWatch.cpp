#include "cli/session/AnswerWatch.h"

#include <charconv>

namespace airsync {

namespace {

// Tokens that mean the same on every page.
enum Token : std::uint8_t {
  kSwitchPage = 0x00,
  kEnd = 0x01,
  kEntity = 0x02,
  kInlineText = 0x03,
  kLiteral = 0x04,
  kExtensionText = 0x40,  // to 0x42
  kInstruction = 0x43,
  kExtensionNumber = 0x80,  // to 0x82
  kTableText = 0x83,
  kExtensionByte = 0xc0,  // to 0xc2
  kOpaque = 0xc3,
};

constexpr std::uint8_t kHasContent = 0x40;
constexpr std::uint8_t kHasAttributes = 0x80;
constexpr std::uint8_t kTagBits = 0x3f;
constexpr unsigned kBitsOfADigit = 7;

bool isExtension(std::uint8_t token, std::uint8_t first) { return token >= first && token <= first + 2; }

}  // namespace

void AnswerWatch::take(const std::uint8_t* bytes, std::size_t count) {
  for (std::size_t index = 0; index < count; ++index) takeByte(bytes[index]);
}

std::optional<int> AnswerWatch::fetchStatus() const {
  if (fetchStatus_.empty()) return std::nullopt;
  int status = 0;  // of a text that is no number, as the library reads it
  std::from_chars(fetchStatus_.data(), fetchStatus_.data() + fetchStatus_.size(), status);
  return status;
}

void AnswerWatch::takeByte(std::uint8_t byte) {
  switch (state_) {
    case State::version:
      expect(Number::publicId);
      break;
    case State::number:
      value_ = value_ << kBitsOfADigit | (byte & 0x7fU);
      if ((byte & 0x80U) == 0) numberRead();
      break;
    case State::tokens:
      takeToken(byte);
      break;
    case State::page:
      if (!attributes_) page_ = byte;
      state_ = State::tokens;
      break;
    case State::text:
      if (byte == 0) {
        state_ = State::tokens;
      } else {
        takeText(static_cast<char>(byte));
      }
      break;
    case State::skip:
      if (--value_ == 0) state_ = State::tokens;
      break;
  }
}

void AnswerWatch::expect(Number number) {
  number_ = number;
  value_ = 0;
  state_ = State::number;
}

void AnswerWatch::numberRead() {
  switch (number_) {
    case Number::publicId:
      return expect(value_ == 0 ? Number::publicIndex : Number::charset);
    case Number::publicIndex:
      return expect(Number::charset);
    case Number::charset:
      return expect(Number::tableLength);
    case Number::tableLength:
    case Number::opaqueLength:
      state_ = value_ == 0 ? State::tokens : State::skip;
      return;
    case Number::other:
      state_ = State::tokens;
  }
}

void AnswerWatch::takeToken(std::uint8_t token) {
  if (token == kSwitchPage) {
    state_ = State::page;
  } else if (token == kEnd && attributes_) {
    attributes_ = false;
  } else if (token == kEnd) {
    if (!open_.empty()) open_.pop_back();
  } else if (token == kInlineText || isExtension(token, kExtensionText)) {
    state_ = State::text;
  } else if (token == kEntity || token == kTableText || isExtension(token, kExtensionNumber)) {
    expect(Number::other);
  } else if (token == kOpaque) {
    expect(Number::opaqueLength);
  } else if (token == kInstruction) {
    attributes_ = true;
  } else if (isExtension(token, kExtensionByte)) {
    return;
  } else if (!attributes_) {
    openElement(token);
  } else if (token == kLiteral) {
    expect(Number::other);
  }
}

void AnswerWatch::openElement(std::uint8_t token) {
  const bool literal = (token & kTagBits) == kLiteral;
  const Tag tag = literal ? kNothing : static_cast<Tag>(page_ << 8U | (token & kTagBits));
  if (open_.empty() && root_ == kNothing) root_ = tag;
  if (tag == kMeetingResult) meetingResult_ = true;
  attributes_ = (token & kHasAttributes) != 0;
  if ((token & kHasContent) != 0) open_.push_back(tag);
  if (literal) expect(Number::other);
}

void AnswerWatch::takeText(char character) {
  constexpr std::size_t kLongest = 9;  // digits that fit an int
  if (attributes_ || open_.size() < 2 || fetchStatus_.size() >= kLongest) return;
  if (open_.back() == kStatus && open_[open_.size() - 2] == kFetch) fetchStatus_ += character;
}

}  // namespace airsync
