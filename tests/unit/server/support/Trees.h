// Trees of elements as people write them: Subject"Lunch" Attendees(Attendee(AttendeeName"Ann")).
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "wbxml/Element.h"
#include "wbxml/Vocabulary.h"

namespace demoserver {

// The children of the element; an empty text and none look the same.
inline std::string textOfTree(const Element& parent) {
  std::string text;
  for (const Element& child : parent.children) {
    text.append(text.empty() ? "" : " ").append(child.name);
    if (child.text && !child.text->empty()) text.append("\"").append(*child.text).append("\"");
    if (!child.children.empty()) text.append("(").append(textOfTree(child)).append(")");
  }
  return text;
}

namespace trees {

inline void parse(Element& parent, Page page, std::string_view& rest) {
  while (!rest.empty() && rest.front() != ')') {
    if (rest.front() == ' ') {
      rest.remove_prefix(1);
      continue;
    }
    const std::size_t end = std::min(rest.find_first_of(" \"()"), rest.size());
    const std::string_view name = nameOf(page, tokenOf(page, rest.substr(0, end)));
    if (name.empty()) return static_cast<void>(ADD_FAILURE() << "no tag " << rest.substr(0, end));
    rest.remove_prefix(end);
    Element child(page, name);
    if (rest.starts_with('"')) {
      const std::size_t close = rest.find('"', 1);
      child.text = rest.substr(1, close - 1);
      rest.remove_prefix(close + 1);
    }
    if (rest.starts_with('(')) {
      rest.remove_prefix(1);
      parse(child, page, rest);
      rest.remove_prefix(1);
    }
    parent.add(std::move(child));
  }
}

}  // namespace trees

// An ApplicationData with such children, all of one page.
inline Element dataOfTree(Page page, std::string_view text) {
  Element data(Page::Sync, "ApplicationData");
  trees::parse(data, page, text);
  return data;
}

}  // namespace demoserver
