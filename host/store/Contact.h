// A contact as the host handles it: a value that may be copied, compared, edited and kept.
#ifndef AIRSYNC_HOST_STORE_CONTACT_H
#define AIRSYNC_HOST_STORE_CONTACT_H

#include <string>
#include <utility>

#include "store/FieldValues.h"

namespace airsync {

/// The 52 fields of a contact; see FieldValues for reaching them.
class Contact : public FieldValues<AIRSYNC_STACK::AS_CONTACT_T> {
 public:
  using Fields = FieldValues<AIRSYNC_STACK::AS_CONTACT_T>;
  using List = airsync::List;
  using Value = FieldValue;

  Contact() = default;
  explicit Contact(Fields fields) : Fields(std::move(fields)) {}

  /// A copy of a record of the library. Null pointers become absent fields.
  static Contact fromRecord(const AIRSYNC_STACK::AS_CONTACT_T& record) {
    return Contact(Fields::fromRecord(record));
  }

  /// What a list of contacts shows: the name under which the contact is filed, or the best there is instead
  /// (first and last name, company, e-mail address); the first e-mail address; the first telephone number.
  /// Empty where there is nothing.
  std::string displayName() const;
  std::string email() const;
  std::string phone() const;

  friend bool operator==(const Contact&, const Contact&) = default;
};

}  // namespace airsync

#endif
