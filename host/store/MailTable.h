// The tables of mails.
#ifndef AIRSYNC_HOST_STORE_MAIL_TABLE_H
#define AIRSYNC_HOST_STORE_MAIL_TABLE_H

#include <memory>
#include <string>

#include "store/ClassContents.h"
#include "store/FieldColumns.h"
#include "store/Mail.h"

namespace airsync {

/// The only local change of a mail is whether it is read. So whatever else comes from the server is taken
/// into both versions, and shown at once.
class MailTable final : public ClassContents<Mail, AIRSYNC_STACK::AS_EMAIL_T> {
 public:
  explicit MailTable(Database& database);

  bool canBeAdded() const override { return false; }
  bool standsAlone(const void* record) const override;
  void validate(const ItemValue& value) const override;
  void update(ItemNumber item, const void* record, Extent extent) override;
  void updateBehind(ItemNumber item, const void* record, Extent extent) override;
  std::unique_ptr<OutgoingRecord> read(ItemNumber item, Version version) override;
  bool covered(ItemNumber item, Version version, const void* record) override;
  std::string likeness(const void* record) override;
  const std::string& summaryColumns() const override;
  ItemDetails summary(const Query& query, int column) const override;

 private:
  void insert(ItemNumber item, Version version, const Mail& mail) override;
  Mail get(ItemNumber item, Version version) override;
  bool sameValue(const Mail& ours, const Mail& theirs) const override { return ours == theirs; }
  Mail updated(ItemNumber item, const void* record, Extent extent);

  FieldColumns<AIRSYNC_STACK::AS_EMAIL_T> mails_;
  FieldColumns<AIRSYNC_STACK::AS_ATTACHMENT_T> attachments_;
  FieldColumns<AIRSYNC_STACK::AS_MEETING_REQUEST_T> meetings_;
  FieldColumns<AIRSYNC_STACK::AS_RECURRENCE_T> recurrences_;
};

}  // namespace airsync

#endif
