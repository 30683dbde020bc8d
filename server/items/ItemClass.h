// What the server knows of one class of items: how a record travels, and what makes a record valid.
//
// A record is a JSON object, as it is stored and as the administration shows it. Each class of items is one
// implementation; folders of a class that holds no items yet are served as empty collections.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

#include "wbxml/Element.h"

namespace demoserver {

// An item that can't be taken as it is. The text says which field is wrong, and why.
class ItemError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct TransferOptions {
  std::size_t bodyLimit = std::string::npos;  // bytes of a Body that are sent
  // Tags that a Change replaces, each followed by a space; "*" for all of them. A tag that is replaced and
  // absent is cleared, every other keeps its value.
  std::string supported = "*";
};

// The number of the Truncation option to a body limit: 0 sends no body, 1 to 7 send 4,096, 5,120, 7,168,
// 10,240, 20,480, 51,200 and 102,400 bytes, any other number sends all.
std::size_t bodyLimitOf(int truncation);

class ItemClass {
 public:
  virtual ~ItemClass() = default;

  // The text of the Class element.
  virtual std::string_view name() const = 0;
  // The ApplicationData element of a record.
  virtual Element encode(const nlohmann::json& record, const TransferOptions& options) const = 0;
  // The record that a client's ApplicationData makes of `previous` (an empty object for an Add).
  virtual nlohmann::json decode(const Element& data, const nlohmann::json& previous,
                                const TransferOptions& options) const = 0;
  // The record in the form in which it is stored. Throws ItemError when it is none.
  virtual nlohmann::json check(const nlohmann::json& record) const = 0;
  // The record as the administration shows it, computed fields included.
  virtual nlohmann::json view(const nlohmann::json& record) const = 0;
};

// The class of the items in folders of this type; null for folders that are never synchronised.
const ItemClass* itemClassOf(int folderType);

}  // namespace demoserver
