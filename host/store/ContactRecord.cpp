#include "store/ContactRecord.h"

namespace airsync {

using namespace AIRSYNC_STACK;

ContactRecord::ContactRecord(const Contact& contact) {
  for (std::size_t index = 0; index < Contact::kFields; ++index) {
    const AS_CONTACT_FIELD_T& field = AS_CONTACT_FIELDS[index];
    Storage& storage = storage_.at(index);
    if (const auto* text = contact.get<std::string>(index)) {
      storage.text = *text;
      record_.*field.text = storage.text.data();
    } else if (const auto* entries = contact.get<Contact::List>(index)) {
      storage.text = packList(*entries);
      record_.*field.text = storage.text.data();
    } else if (const auto* number = contact.get<std::int32_t>(index)) {
      storage.number = *number;
      record_.*field.number = &storage.number;
    } else if (const auto* flag = contact.get<bool>(index)) {
      storage.flag = *flag ? 1 : 0;
      record_.*field.flag = &storage.flag;
    } else if (const auto* time = contact.get<UtcTime>(index)) {
      storage.time = time->tm();
      record_.*field.time = &storage.time;
    }
  }
}

}  // namespace airsync
