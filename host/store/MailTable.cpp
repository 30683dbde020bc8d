#include "store/MailTable.h"

#include <utility>

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr FieldPlace kMails = {.table = "mail"};
constexpr FieldPlace kAttachments = {.table = "mail_attachment", .position = "position"};
constexpr FieldPlace kMeetings = {.table = "mail_meeting", .entries = "mail_meeting_category"};
constexpr FieldPlace kRecurrences = {.table = "mail_meeting_recurrence"};

// All that a request carries of a mail.
class OutgoingMark final : public OutgoingRecord {
 public:
  explicit OutgoingMark(bool read) { record_.Read = read ? 1 : 0; }
  void* record() override { return &record_; }

 private:
  AS_EMAIL_T record_ = {};
};

bool isInline(AS_FIELD_FORM_T form) { return form == AS_FORM_INLINE_NUMBER || form == AS_FORM_INLINE_FLAG; }

// Whether a record has more of a mail than the fields that are in every record.
bool hasMoreThanInlineFields(const Mail& mail) {
  if (!mail.attachments.empty() || mail.meetingRequest) return true;
  const auto table = FieldValues<AS_EMAIL_T>::table();
  for (std::size_t index = 0; index < table.size(); ++index) {
    if (!isInline(table[index].form) && !std::holds_alternative<std::monostate>(mail.fields[index]))
      return true;
  }
  return false;
}

// Takes over what a server's change carries. Null says that it carries nothing of a field; but Importance and
// Read are in the record itself, where "not sent" looks like 0. A change in which nothing else is set is one
// of Read, the only field that servers change by itself, and Importance is not looked at. A change with other
// fields is taken for one that carries both.
void merge(Mail& mail, const Mail& change) {
  const auto table = FieldValues<AS_EMAIL_T>::table();
  // How large a body is, and whether it was cut, belongs to the body that it came with.
  if (change.fields.get<std::string>("Body") != nullptr) {
    mail.fields.set("BodySize", std::monostate());
    mail.fields.set("BodyTruncated", std::monostate());
  }
  for (std::size_t index = 0; index < table.size(); ++index) {
    const FieldValue& value = change.fields[index];
    if (isInline(table[index].form) || std::holds_alternative<std::monostate>(value)) continue;
    mail.fields.set(index, value);
  }
  mail.fields.set("Read", change.read());
  if (hasMoreThanInlineFields(change))
    mail.fields.set("Importance", *change.fields.get<std::int32_t>("Importance"));
  if (!change.attachments.empty()) mail.attachments = change.attachments;
  if (change.meetingRequest) mail.meetingRequest = change.meetingRequest;
}

}  // namespace

MailTable::MailTable(Database& database)
    : ClassContents(database, "mail"),
      mails_(database, kMails),
      attachments_(database, kAttachments),
      meetings_(database, kMeetings),
      recurrences_(database, kRecurrences) {}

void MailTable::validate(const ItemValue& value) const {
  valueOf<Mail>(value);
  throw Error(
      {.kind = ErrorKind::item,
       .operation = "changing the mail",
       .subject = {},
       .cause = "the protocol lets a device mark mails read or unread, and delete them, but not edit them",
       .advice = "Use \"airsync mark\" or \"airsync delete\"; \"airsync send\" sends a message."});
}

void MailTable::insert(ItemNumber item, Version version, const Mail& mail) {
  mails_.insert(item, version, mail.fields);
  std::int64_t position = 0;
  for (const auto& attachment : mail.attachments) attachments_.insert(item, version, attachment, position++);
  if (!mail.meetingRequest) return;
  meetings_.insert(item, version, mail.meetingRequest->fields);
  if (const auto& recurrence = mail.meetingRequest->recurrence) {
    recurrences_.insert(item, version, *recurrence);
  }
}

// Every record tells whether the mail is read, and nothing else is changed here: so the shown version can
// stand for the server's.
Mail MailTable::updated(ItemNumber item, const void* record, Extent extent) {
  Mail news = valueFrom(record);
  if (extent == Extent::whole) return news;
  Mail mail = get(item, Version::shown);
  merge(mail, news);
  return mail;
}

bool MailTable::standsAlone(const void* record) const { return hasMoreThanInlineFields(valueFrom(record)); }

void MailTable::update(ItemNumber item, const void* record, Extent extent) {
  replace(item, Version::shown, updated(item, record, extent));
}

void MailTable::updateBehind(ItemNumber item, const void* record, Extent extent) {
  const bool read = get(item, Version::shown).read();
  Mail mail = updated(item, record, extent);
  replace(item, Version::server, mail);
  mail.fields.set("Read", read);
  replace(item, Version::shown, mail);
}

Mail MailTable::get(ItemNumber item, Version version) {
  Mail mail;
  for (auto& fields : mails_.load(item, version)) mail.fields = std::move(fields);
  mail.attachments = attachments_.load(item, version);
  for (auto& fields : meetings_.load(item, version)) {
    mail.meetingRequest = MeetingRequest{std::move(fields), std::nullopt};
    for (auto& rule : recurrences_.load(item, version)) mail.meetingRequest->recurrence = std::move(rule);
  }
  return mail;
}

std::unique_ptr<OutgoingRecord> MailTable::read(ItemNumber item, Version version) {
  Query query(database(), "SELECT \"Read\" FROM mail WHERE item_id = ? AND version = ?");
  query.bind(item).bind(columnOf(version));
  return std::make_unique<OutgoingMark>(query.step() && query.integer(0) != 0);
}

// Only additions come back from the server, and there are none.
bool MailTable::covered(ItemNumber /*item*/, Version /*version*/, const void* /*record*/) { return false; }
std::string MailTable::likeness(const void* /*record*/) { return {}; }

const std::string& MailTable::summaryColumns() const {
  static const std::string columns =
      "mail.\"From\", mail.\"Subject\", mail.\"DateReceived\", mail.\"Read\", mail.\"BodyTruncated\", "
      "(SELECT count(*) FROM mail_attachment WHERE mail_attachment.item_id = mail.item_id AND "
      "mail_attachment.version = mail.version), EXISTS (SELECT 1 FROM mail_meeting WHERE "
      "mail_meeting.item_id = mail.item_id AND mail_meeting.version = mail.version)";
  return columns;
}

ItemDetails MailTable::summary(const Query& query, int column) const {
  return MailSummary{.from = query.text(column),
                     .subject = query.text(column + 1),
                     .received = UtcTime::parse(query.text(column + 2)),
                     .read = query.integer(column + 3) != 0,
                     .attachments = static_cast<std::size_t>(query.integer(column + 5)),
                     .truncated = query.integer(column + 4) != 0,
                     .isMeetingRequest = query.integer(column + 6) != 0};
}

}  // namespace airsync
