#include "data/SeedEvents.h"

#include <array>

#include "data/SeedPeople.h"
#include "data/SeedTexts.h"
#include "data/SeedZones.h"
#include "support/Base64.h"

namespace demoserver {
namespace {

using nlohmann::json;
using namespace std::chrono;

enum class Shape : std::uint8_t { Single, LongBody, AllDay, Organised, Invited, Cancelled, Series };

struct Kind {
  Shape shape;
  int type = 0;  // of a series
};

constexpr std::array<Kind, 12> kRound = {{{Shape::Single},
                                          {Shape::LongBody},
                                          {Shape::Series, 0},
                                          {Shape::Series, 1},
                                          {Shape::Series, 2},
                                          {Shape::Series, 3},
                                          {Shape::Series, 5},
                                          {Shape::Series, 6},
                                          {Shape::Organised},
                                          {Shape::Invited},
                                          {Shape::AllDay},
                                          {Shape::Cancelled}}};

class EventWriter {
 public:
  EventWriter(std::uint64_t seed, int number, Moment now)
      : random_(seed * 0x9E6C63D0676A9A99u + static_cast<std::uint64_t>(number)),
        number_(number),
        kind_(kRound[static_cast<std::size_t>(number) % kRound.size()]),
        start_(floor<days>(now) + days(random_.below(320) - 200) + minutes(15 * (28 + random_.below(40)))),
        end_(start_ + minutes(15 * (1 + random_.below(12)))) {
    if (kind_.shape == Shape::AllDay || kind_.type == 5) {
      start_ = floor<days>(start_);
      end_ = start_ + days(1 + (kind_.type == 5 ? 0 : random_.below(5)));
    }
    // Every month has such a day.
    const year_month_day date(floor<days>(start_));
    if (kind_.shape == Shape::Series && unsigned(date.day()) > 28) {
      start_ -= days(7);
      end_ -= days(7);
    }
  }

  json run() {
    basics();
    texts();
    if (kind_.shape >= Shape::Organised && kind_.shape <= Shape::Cancelled) meeting();
    if (kind_.shape == Shape::Series) series();
    return std::move(event_);
  }

 private:
  int round() const { return number_ / static_cast<int>(kRound.size()); }
  bool isAllDay() const { return start_ == floor<days>(start_) && end_ - start_ >= days(1); }

  void basics() {
    const std::size_t zone = isAllDay() ? kUtcZone : static_cast<std::size_t>(random_.below(kSeedZones));
    event_ = {{"Timezone", base64(seedZone(zone))},
              {"StartTime", itemTime(start_)},
              {"EndTime", itemTime(end_)},
              {"DtStamp", itemTime(start_ - days(30) - minutes(random_.below(1000)))},
              {"AllDayEvent", isAllDay()},
              {"BusyStatus", number_ % 4},
              {"Sensitivity", number_ % 5 == 0 ? random_.below(4) : 0},
              {"MeetingStatus", 0},
              {"Subject", pickSubject(random_) + " " + std::to_string(number_)},
              {"UID", "event-" + std::to_string(number_) + "-" + std::to_string(random_.below(1'000'000))}};
  }

  void texts() {
    const bool all = kind_.shape == Shape::Series;
    if (all || random_.chance(60)) event_["Location"] = pickPlace(random_);
    if (all || random_.chance(70)) event_["Reminder"] = random_.chance(50) ? 15 : 0;
    if (all || random_.chance(30)) event_["Categories"] = categories();
    if (all || random_.chance(50)) event_["Body"] = someText(random_, 1 + random_.below(4));
    if (kind_.shape == Shape::LongBody) event_["Body"] = longText(random_, 1 + round() % 7);
  }

  json categories() {
    json list = json::array({pickCategory(random_)});
    if (random_.chance(40)) list.push_back(pickCategory(random_));
    return list;
  }

  // MeetingStatus: 1 of one's own, 3 of somebody else, 5 and 7 the same when they are cancelled.
  void meeting() {
    const bool own =
        kind_.shape == Shape::Organised || (kind_.shape == Shape::Cancelled && number_ % 24 == 11);
    event_["MeetingStatus"] = (own ? 1 : 3) + (kind_.shape == Shape::Cancelled ? 4 : 0);
    const Person organizer = own ? Person{"Demo", "demo@example.com"} : pickPerson(random_);
    event_["OrganizerName"] = organizer.name;
    event_["OrganizerEmail"] = organizer.address;
    event_["Attendees"] = json::array();
    for (int count = 1 + random_.below(5); count > 0; --count) {
      const Person person = pickPerson(random_);
      event_["Attendees"].push_back({{"Name", person.name}, {"Email", person.address}});
    }
  }

  void series() {
    json rule = seedRecurrence(kind_.type, start_);
    if (round() % 3 == 0)
      rule["Occurrences"] = 5 + random_.below(20);
    else if (round() % 3 == 1)
      rule["Until"] = itemTime(seedOccurrence(kind_.type, start_, 5 + random_.below(20)));
    event_["Recurrence"] = std::move(rule);
    if (number_ % 2 == round() % 2)
      event_["Exceptions"] = json::array({cancelled(1), moved(2), cancelled(4)});
  }

  json cancelled(int n) {
    return {{"Deleted", true}, {"ExceptionStartTime", itemTime(seedOccurrence(kind_.type, start_, n))}};
  }

  json moved(int n) {
    const Moment was = seedOccurrence(kind_.type, start_, n);
    const Moment start = was + hours(2);
    return {{"Deleted", false},
            {"DtStamp", itemTime(start_ - days(2))},
            {"ExceptionStartTime", itemTime(was)},
            {"StartTime", itemTime(start)},
            {"EndTime", itemTime(start + (end_ - start_))},
            {"Location", pickPlace(random_)},
            {"Body", someText(random_, 1)},
            {"BusyStatus", 1},
            {"Sensitivity", 2},
            {"Reminder", 30},
            {"Subject", pickSubject(random_)},
            {"UID", event_["UID"]},
            {"AllDayEvent", false},
            {"Categories", categories()}};
  }

  Random random_;
  int number_;
  Kind kind_;
  Moment start_;
  Moment end_;
  json event_ = json::object();
};

// Daily series have every second day, weekly ones one more weekday than that of their first occurrence.
constexpr int kEveryOther = 2;

int maskOf(Moment moment) { return 1 << weekday(floor<days>(moment)).c_encoding(); }

}  // namespace

json seedRecurrence(int type, Moment first) {
  const year_month_day date(floor<days>(first));
  const int day = static_cast<int>(unsigned(date.day()));
  json rule = {{"Type", type}, {"Interval", type == 0 ? kEveryOther : 1}};
  if (type == 1) rule["DayOfWeek"] = maskOf(first) | maskOf(first + days(2));
  if (type == 2 || type == 5) rule["DayOfMonth"] = day;
  if (type == 3 || type == 6) {
    rule["DayOfWeek"] = maskOf(first);
    rule["WeekOfMonth"] = (day - 1) / 7 + 1;
  }
  if (type >= 5) rule["MonthOfYear"] = static_cast<int>(unsigned(date.month()));
  return rule;
}

Moment seedOccurrence(int type, Moment first, int n) {
  const auto day = floor<days>(first);
  const year_month_day date(day);
  const year_month_weekday byWeekday(day);
  const auto time = first - day;
  switch (type) {
    case 0:
      return first + days(kEveryOther * n);
    case 1:
      return first + weeks(n / 2) + days(n % 2 == 0 ? 0 : 2);
    case 2:
      return sys_days(date + months(n)) + time;
    case 3:
      return sys_days(byWeekday + months(n)) + time;
    case 5:
      return sys_days(date + years(n)) + time;
    default:
      return sys_days(byWeekday + years(n)) + time;
  }
}

json seedEvent(std::uint64_t seed, int number, Moment now) { return EventWriter(seed, number, now).run(); }

std::string seedEventFolder(int number) {
  if (number % 7 == 3) return "c1";
  return number % 14 == 5 ? "c2" : "f8";
}

}  // namespace demoserver
