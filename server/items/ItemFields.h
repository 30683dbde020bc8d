// Tables of the fields of events and mails, and the one way in which they travel: between JSON records and
// the elements of a document.
//
//   Text         "text"                      text, of which only tab, LF and CR are control characters
//   Body         "text"                      a text that may be cut on its way to a client
//   BodySize     (not stored)                bytes of the whole Body; written behind it
//   Truncated    (not stored)                whether the Body was cut; written behind it
//   Number       42                          decimal, 32 bits
//   Flag         true                        "1" or "0"; any other number is read as true
//   Time         "2026-11-21T09:00:00Z"      "2026-11-21T09:00:00.000Z"
//   CompactTime  "2026-11-21T09:00:00Z"      "20261121T090000Z"
//   Zone         base64 of 172 bytes         the same
//   List         ["a", "b"]                  an element for each, in a container; empty ones are no entries
//   Record       {...}                       a container with the fields of another table
//   Records      [{...}, {...}]              such a container for each, in a container
//
// A field that an item does not have is absent from both. An element that is there and holds nothing stands
// for an absent field. The first of several elements counts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>

#include "wbxml/Element.h"

namespace demoserver {

enum class FieldForm : std::uint8_t {
  Text,
  Body,
  BodySize,
  Truncated,
  Number,
  Flag,
  Time,
  CompactTime,
  Zone,
  List,
  Record,
  Records,
};

struct ItemField {
  std::string_view name;
  std::string_view tag;
  FieldForm form = FieldForm::Text;
  std::string_view entryTag = {};          // of List and Records
  std::span<const ItemField> fields = {};  // of Record and Records
  bool required = false;                   // a record without it is none
};

// More entries than this in one list make no item.
inline constexpr std::size_t kMaxEntries = 1000;
inline constexpr std::size_t kZoneSize = 172;

// Appends the fields of the record to `parent`, in the order of the table. All are on one page.
void encodeFields(Element& parent, Page page, std::span<const ItemField> fields, const nlohmann::json& record,
                  std::size_t bodyLimit);

// Throws ItemError unless every child of the element is a field of the table or of this list of tags (each
// followed by a space) that are let pass and ignored.
void refuseUnknown(const Element& parent, Page page, std::span<const ItemField> fields,
                   std::string_view ignored = "");

// The value of a field in its element: null when it holds none. Throws ItemError.
nlohmann::json decodeField(const Element& element, const ItemField& field);

// The record in the form in which it is stored: without fields that are null or empty. Throws ItemError for
// anything else than an object of these fields; `what` is what it should be ("an event").
nlohmann::json checkFields(const nlohmann::json& record, std::span<const ItemField> fields,
                           const std::string& what);

// Adds the fields that are not stored.
void showBody(nlohmann::json& record, std::span<const ItemField> fields);

}  // namespace demoserver
