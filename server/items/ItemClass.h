// What the server knows of one class of items: how a record travels, and what makes a record valid.
//
// A record is a JSON object, as it is stored and as the administration shows it. Each class of items is one
// implementation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "support/Dates.h"
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
  // A Change clears what it does not name, whatever else says that the old value stays.
  bool clearsUnnamed = false;

  bool replaces(std::string_view tag) const {
    return clearsUnnamed || supported == "*" ||
           (" " + supported).find(" " + std::string(tag) + " ") != std::string::npos;
  }
};

// The number of the Truncation option to a body limit: 0 sends no body, 1 to 7 send 4,096, 5,120, 7,168,
// 10,240, 20,480, 51,200 and 102,400 bytes, any other number sends all.
std::size_t bodyLimitOf(int truncation);

// The start of a window that holds all items.
inline constexpr std::int64_t kNoWindow = INT64_MIN;

class ItemClass {
 public:
  virtual ~ItemClass() = default;

  // The text of the Class element.
  virtual std::string_view name() const = 0;
  // The ApplicationData element of a record.
  virtual Element encode(const nlohmann::json& record, const TransferOptions& options) const = 0;
  // The ApplicationData of a record of which a device has everything but what devices change without an
  // edit; nothing when the class makes no such difference, and a Change carries the whole record.
  virtual std::optional<Element> encodeState(const nlohmann::json&) const { return std::nullopt; }
  // The record that a client's ApplicationData makes of `previous` (an empty object for an Add).
  virtual nlohmann::json decode(const Element& data, const nlohmann::json& previous,
                                const TransferOptions& options) const = 0;
  // The record in the form in which it is stored. Throws ItemError when it is none.
  virtual nlohmann::json check(const nlohmann::json& record) const = 0;
  // The record as the administration shows it, computed fields included.
  virtual nlohmann::json view(const nlohmann::json& record) const = 0;

  // Seconds since 1970: what ended before is not sent under this FilterType (see ItemStore::Item::until).
  virtual std::int64_t windowStart(int, Moment) const { return kNoWindow; }
  // Whether clients may add items.
  virtual bool takesAdds() const { return true; }
  // Whether a deleted item goes to Deleted Items when the client asks for that.
  virtual bool hasDeletedItems() const { return false; }
};

// The class of the items in folders of this type; null for folders that are never synchronised.
const ItemClass* itemClassOf(int folderType);

}  // namespace demoserver
