#include "data/SeedMails.h"

#include <array>

#include "data/SeedEvents.h"
#include "data/SeedPeople.h"
#include "data/SeedTexts.h"
#include "data/SeedZones.h"
#include "support/Base64.h"

namespace demoserver {
namespace {

using nlohmann::json;
using namespace std::chrono;

constexpr std::array kFolders = {"f2", "f2", "f5", "f2", "m/1", "f2", "m/3", "f2", "m%2F4", "f4"};

// Ages of mails in minutes: one span for each FilterType, and one beyond all of them.
struct Span {
  int from;
  int to;
};
constexpr int kDay = 24 * 60;
constexpr std::array<Span, 6> kAges = {{{5, kDay},
                                        {kDay, 3 * kDay},
                                        {3 * kDay, 7 * kDay},
                                        {7 * kDay, 14 * kDay},
                                        {14 * kDay, 28 * kDay},
                                        {32 * kDay, 200 * kDay}}};

class MailWriter {
 public:
  MailWriter(std::uint64_t seed, int number, Moment now)
      : random_(seed * 0xD1342543DE82EF95u + static_cast<std::uint64_t>(number)), number_(number) {
    const Span& age = kAges[static_cast<std::size_t>(number / 5) % kAges.size()];
    received_ = now - minutes(age.from + random_.below(age.to - age.from));
  }

  SeedMail run() {
    SeedMail mail;
    mail.folder = isRequest() ? "f2" : kFolders[static_cast<std::size_t>(number_) % kFolders.size()];
    heading(mail.folder == "f5");
    state();
    body();
    if (isRequest()) record_["MeetingRequest"] = request();
    if (number_ % 5 == 2) mail.attachments = seedAttachments(number_ / 5);
    mail.record = std::move(record_);
    return mail;
  }

 private:
  bool isRequest() const { return number_ % 8 == 3; }

  void heading(bool sent) {
    const Person own{"Demo", "demo@example.com"};
    const Person other = pickPerson(random_);
    const Person& to = sent ? other : own;
    record_["From"] = (sent ? own : other).mailbox();
    record_["To"] = to.mailbox();
    record_["DisplayTo"] = to.name;
    if (random_.chance(30)) {
      const Person third = pickPerson(random_), fourth = pickPerson(random_);
      record_["Cc"] = third.mailbox() + (random_.chance(50) ? ", " + fourth.mailbox() : "");
    }
    if (random_.chance(15)) record_["ReplyTo"] = pickPerson(random_).mailbox();
    const std::string topic = pickSubject(random_) + " " + std::to_string(number_);
    record_["Subject"] = (random_.chance(30) ? "Re: " : "") + topic;
    if (random_.chance(90)) record_["ThreadTopic"] = topic;
  }

  void state() {
    record_["DateReceived"] = itemTime(received_);
    record_["Importance"] = number_ % 7 == 1 ? 2 : number_ % 11 == 5 ? 0 : 1;
    record_["Read"] = random_.chance(60);
    record_["MessageClass"] = isRequest() ? "IPM.Schedule.Meeting.Request" : "IPM.Note";
  }

  // Every tenth is longer than a limit of Truncation; one in fifteen is empty.
  void body() {
    if (number_ % 10 == 4)
      record_["Body"] = longText(random_, 1 + number_ / 10 % 7);
    else if (number_ % 15 != 8)
      record_["Body"] = someText(random_, 1 + random_.below(8));
  }

  // InstanceType: 0 a single meeting, 1 a series, 2 one occurrence of a series.
  json request() {
    const int instance = number_ / 8 % 3;
    const int type = std::array{0, 1, 2, 3, 5, 6}[static_cast<std::size_t>(number_ / 24 % 6)];
    const Moment start =
        firstDays(floor<days>(received_) + days(3 + random_.below(20))) + hours(8 + random_.below(9));
    json request = {{"Timezone", base64(seedZone(static_cast<std::size_t>(random_.below(kSeedZones))))},
                    {"StartTime", itemTime(start)},
                    {"EndTime", itemTime(start + minutes(30 * (1 + random_.below(4))))},
                    {"DtStamp", itemTime(received_ - minutes(1))},
                    {"Location", pickPlace(random_)},
                    {"Reminder", 15},
                    {"AllDayEvent", false},
                    {"BusyStatus", 2},
                    {"Sensitivity", number_ / 8 % 4},
                    {"InstanceType", instance},
                    {"Organizer", record_["From"]},
                    {"ResponseRequested", number_ / 8 % 5 == 4 ? 0 : 1},
                    {"GlobalObjId", globalId()}};
    if (random_.chance(50)) request["Categories"] = json::array({pickCategory(random_)});
    if (instance == 1) {
      request["Recurrence"] = seedRecurrence(type, start);
      request["Recurrence"][number_ % 16 == 3 ? "Occurrences" : "Until"] =
          number_ % 16 == 3 ? json(10) : json(itemTime(seedOccurrence(type, start, 9)));
    }
    if (instance == 2) request["RecurrenceId"] = itemTime(start - hours(1));
    return request;
  }

  // Every month has such a day.
  static sys_days firstDays(sys_days day) {
    return unsigned(year_month_day(day).day()) > 28 ? day + days(4) : day;
  }

  std::string globalId() {
    std::string id;
    for (int i = 0; i < 40; ++i) id += static_cast<char>(random_.below(256));
    return base64(id);
  }

  Random random_;
  int number_;
  Moment received_;
  json record_ = json::object();
};

}  // namespace

SeedMail seedMail(std::uint64_t seed, int number, Moment now) { return MailWriter(seed, number, now).run(); }

}  // namespace demoserver
