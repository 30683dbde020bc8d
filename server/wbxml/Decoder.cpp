#include <algorithm>
#include <cstdint>

#include "support/Utf8.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

enum Byte : std::uint8_t {
  kSwitchPage = 0x00,
  kEnd = 0x01,
  kEntity = 0x02,
  kInlineString = 0x03,
  kLiteral = 0x04,
  kProcessing = 0x43,
  kTableString = 0x83,
  kOpaque = 0xC3,
};

constexpr unsigned kAttributeBit = 0x80;
constexpr unsigned kContentBit = 0x40;
constexpr unsigned kTokenMask = 0x3F;
constexpr std::uint32_t kUsAscii = 3;
constexpr std::uint32_t kUtf8 = 106;

class Decoder {
 public:
  explicit Decoder(std::string_view in) : in_(in) {}

  Element run() {
    readHeader();
    Element root = readElement(byte(), 1);
    if (at_ != in_.size()) fail("bytes follow the root element");
    return root;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const { throw WbxmlError(at_, what); }

  std::uint8_t byte() {
    if (at_ == in_.size()) fail("the document ends too early");
    return static_cast<std::uint8_t>(in_[at_++]);
  }

  std::string_view bytes(std::size_t count) {
    if (count > in_.size() - at_) fail("a length points past the end of the document");
    const std::string_view taken = in_.substr(at_, count);
    at_ += count;
    return taken;
  }

  std::uint32_t integer() {
    std::uint64_t value = 0;
    for (int groups = 0; groups < 5; ++groups) {
      const std::uint8_t next = byte();
      value = value << 7 | (next & 0x7Fu);
      if (value > UINT32_MAX) break;
      if ((next & 0x80u) == 0) return static_cast<std::uint32_t>(value);
    }
    fail("an integer is longer than 32 bits");
  }

  std::string_view terminated(std::string_view text, const char* what) const {
    const std::size_t end = text.find('\0');
    if (end == std::string_view::npos) fail(what);
    return text.substr(0, end);
  }

  std::string_view tableString() {
    const std::uint32_t offset = integer();
    if (offset >= table_.size()) fail("an offset points past the string table");
    const std::string_view text = terminated(table_.substr(offset), "a string of the table does not end");
    if (text.size() > tableTextLeft_) fail("too much text is taken from the string table");
    tableTextLeft_ -= text.size();
    return text;
  }

  std::string_view inlineString() {
    const std::string_view text = terminated(in_.substr(at_), "a string does not end");
    at_ += text.size() + 1;
    return text;
  }

  void readHeader() {
    if (byte() != 0x03) fail("only version 1.3 is understood");
    if (integer() == 0) integer();  // a public identifier of 0 is followed by its place in the string table
    const std::uint32_t charset = integer();
    if (charset != kUtf8 && charset != kUsAscii && charset != 0) fail("the charset is not UTF-8");
    table_ = bytes(integer());
    tableTextLeft_ = kFreeTableText + kTableTextFactor * std::min(table_.size(), kFreeTableText);
  }

  void switchPage() {
    const std::uint8_t page = byte();
    if (page >= kPageCount) fail("there is no code page " + std::to_string(page));
    page_ = static_cast<Page>(page);
  }

  Element readElement(std::uint8_t tag, int depth) {
    if (depth > kMaxDepth) fail("elements are nested too deeply");
    if (++elements_ > kMaxElements) fail("there are too many elements");
    while (tag == kSwitchPage) {
      switchPage();
      tag = byte();
    }
    if ((tag & kAttributeBit) != 0) fail("attributes are not used by this protocol");
    const std::string_view name = nameOf(page_, tag & kTokenMask);
    if (name.empty())
      fail("page " + std::to_string(static_cast<int>(page_)) + " has no token " +
           std::to_string(tag & kTokenMask));
    Element element(page_, name);
    if ((tag & kContentBit) != 0) readContent(element, depth);
    return element;
  }

  void readContent(Element& element, int depth) {
    for (std::uint8_t next = byte(); next != kEnd; next = byte()) {
      switch (next) {
        case kSwitchPage:
          switchPage();
          break;
        case kEntity:
          append(element, entity());
          break;
        case kInlineString:
          append(element, inlineString());
          break;
        case kTableString:
          append(element, tableString());
          break;
        case kOpaque:
          append(element, opaque());
          break;
        case kProcessing:
          fail("processing instructions are not used by this protocol");
        default:
          element.children.push_back(readElement(next, depth + 1));
      }
    }
  }

  std::string entity() {
    std::string text = utf8(integer());
    if (text.empty()) fail("an entity is no character");
    return text;
  }

  std::string_view opaque() {
    const std::string_view content = bytes(integer());
    if (content.find('\0') != std::string_view::npos) fail("opaque text holds a NUL");
    return content;
  }

  static void append(Element& element, std::string_view piece) {
    if (!element.text) element.text.emplace();
    element.text->append(piece);
  }

  std::string_view in_;
  std::size_t at_ = 0;
  std::size_t elements_ = 0;
  std::string_view table_;
  std::size_t tableTextLeft_ = 0;
  Page page_ = Page::Sync;
};

}  // namespace

Element decode(std::string_view document) { return Decoder(document).run(); }

}  // namespace demoserver
