#include "wbxml/Codec.h"

namespace demoserver {
namespace {

constexpr char kSwitchPage = 0x00;
constexpr char kEnd = 0x01;
constexpr char kInlineString = 0x03;
constexpr unsigned kContentBit = 0x40;
constexpr auto kUnknownPage = static_cast<Page>(17);
constexpr unsigned kUnknownToken = 0x05;

class Encoder {
 public:
  explicit Encoder(bool unknownPage) : unknownPage_(unknownPage) {}

  std::string run(const Element& root) {
    // Version 1.3, public identifier unknown, UTF-8, no string table.
    out_.assign({0x03, 0x01, 0x6A, 0x00});
    write(root);
    return std::move(out_);
  }

 private:
  void write(const Element& element) {
    const unsigned token = tokenOf(element.page, element.name);
    if (token == 0) throw std::logic_error("no token for the tag " + std::string(element.name));
    if (element.page != page_) {
      page_ = element.page;
      out_ += kSwitchPage;
      out_ += static_cast<char>(page_);
    }
    const bool content = element.text.has_value() || !element.children.empty();
    out_ += static_cast<char>(content ? token | kContentBit : token);
    if (!content) return;
    if (element.text) writeText(*element.text, element.name);
    if (unknownPage_ && element.is(Page::Sync, "ApplicationData")) writeUnknown();
    for (const Element& child : element.children) write(child);
    out_ += kEnd;
  }

  // An element with a text, on a page of which this vocabulary holds nothing.
  void writeUnknown() {
    page_ = kUnknownPage;
    out_ += kSwitchPage;
    out_ += static_cast<char>(page_);
    out_ += static_cast<char>(kUnknownToken | kContentBit);
    writeText("1", "an unknown page");
    out_ += kEnd;
  }

  void writeText(const std::string& text, std::string_view tag) {
    if (text.find('\0') != std::string::npos)
      throw std::logic_error("a NUL in the text of " + std::string(tag));
    out_ += kInlineString;
    out_ += text;
    out_ += '\0';
  }

  bool unknownPage_;
  Page page_ = Page::Sync;
  std::string out_;
};

}  // namespace

std::string encode(const Element& root) { return Encoder(false).run(root); }

std::string encodeWithUnknownPage(const Element& root) { return Encoder(true).run(root); }

}  // namespace demoserver
