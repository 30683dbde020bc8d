// Records as JSON: what a reader takes can be shown, and what was shown reads the same again.
//
// Keeps S20.
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "formats/ContactJson.h"
#include "formats/EventJson.h"
#include "support/Error.h"

namespace {

using namespace airsync;

void Require(bool promise) {
  if (!promise) __builtin_trap();
}

std::string Shown(const nlohmann::ordered_json& json) {
  return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

void ReadContact(std::string_view text) {
  Contact contact;
  parseContactPatch(text).applyTo(contact);
  contact.validate();
  Contact again;
  parseContactPatch(Shown(contactToJson(contact))).applyTo(again);
  Require(again == contact);
}

void ReadEvent(std::string_view text) {
  const EventPatch patch = parseEventPatch(text);
  Event event;
  patch.applyTo(event);
  event.validate();
  Event again;
  parseEventPatch(Shown(eventToJson(event))).applyTo(again);
  Require(again == event);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  try {
    if (data[0] % 2 == 0) {
      ReadContact(text);
    } else {
      ReadEvent(text);
    }
  } catch (const RecordError&) {  // NOLINT(bugprone-empty-catch): refused, as it should be
  } catch (const Error&) {        // NOLINT(bugprone-empty-catch)
  }
  return 0;
}
