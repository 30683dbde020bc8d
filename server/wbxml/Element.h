// One element of a document: what both directions of the codec work on.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "wbxml/Vocabulary.h"

namespace demoserver {

struct Element {
  Page page;
  std::string_view name;  // a literal or a name of the vocabulary: never owned
  std::optional<std::string> text;
  std::vector<Element> children;

  Element(Page onPage, std::string_view tag) : page(onPage), name(tag) {}
  Element(Page onPage, std::string_view tag, std::string content)
      : page(onPage), name(tag), text(std::move(content)) {}

  bool is(Page onPage, std::string_view tag) const { return page == onPage && name == tag; }

  // Appends a child and returns it; valid until the next one is appended.
  Element& add(Element child) { return children.emplace_back(std::move(child)); }
  Element& add(std::string_view tag) { return children.emplace_back(page, tag); }
  Element& add(std::string_view tag, std::string content) {
    return children.emplace_back(page, tag, std::move(content));
  }

  // The first child with this tag on that page, or on this element's own; null when there is none.
  const Element* child(Page onPage, std::string_view tag) const {
    for (const Element& each : children)
      if (each.is(onPage, tag)) return &each;
    return nullptr;
  }
  const Element* child(std::string_view tag) const { return child(page, tag); }

  // The text of that child; empty when there is no such child or it holds no text.
  std::string_view textOf(std::string_view tag) const {
    const Element* found = child(tag);
    return found != nullptr && found->text ? std::string_view(*found->text) : std::string_view();
  }
};

}  // namespace demoserver
