// The tables of events.
#ifndef AIRSYNC_HOST_STORE_EVENT_TABLE_H
#define AIRSYNC_HOST_STORE_EVENT_TABLE_H

#include <memory>
#include <string>

#include "store/ClassContents.h"
#include "store/Event.h"
#include "store/FieldColumns.h"

namespace airsync {

class EventTable final : public ClassContents<Event, AIRSYNC_STACK::AS_CALENDAR_T> {
 public:
  explicit EventTable(Database& database);

  void validate(const ItemValue& value) const override { valueOf<Event>(value).validate(); }
  std::unique_ptr<OutgoingRecord> read(ItemNumber item, Version version) override;
  bool covered(ItemNumber item, Version version, const void* record) override;
  std::string likeness(const void* record) override;
  std::string identity(const void* record) const override;
  void identify(ItemValue& value, bool anew) const override;
  const std::string& summaryColumns() const override;
  ItemDetails summary(const Query& query, int column) const override;

 private:
  void insert(ItemNumber item, Version version, const Event& event) override;
  Event get(ItemNumber item, Version version) override;
  bool sameValue(const Event& ours, const Event& theirs) const override;

  FieldColumns<AIRSYNC_STACK::AS_CALENDAR_T> events_;
  FieldColumns<AIRSYNC_STACK::AS_RECURRENCE_T> recurrences_;
  FieldColumns<AIRSYNC_STACK::AS_EXCEPTION_T> exceptions_;
};

}  // namespace airsync

#endif
