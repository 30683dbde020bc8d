#include "store/Event.h"

#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Commands = std::vector<Command>;

TEST(Event, IsTheSameAfterTheWayThroughARecord) {
  const Event event = fullEvent();
  EventRecord record(event);
  const AS_CALENDAR_T& raw = record.record();
  EXPECT_EQ(raw.ExceptionCount, 3);
  EXPECT_STREQ(raw.Attendees, "Ann 17##ann@example.com@@##b@example.com@@Cy##");
  EXPECT_EQ(raw.Timezone[171], static_cast<UINT8>(5 * 171));
  EXPECT_EQ(raw.Recurrence->Type, -1100);
  EXPECT_STREQ(raw.Exceptions[2].Categories, "first 413@@@@third");
  EXPECT_EQ(Event::fromRecord(raw), event);
}

TEST(Event, HasNoArrayOfExceptionsWhenThereAreNone) {
  EventRecord record(event("Tea"));
  EXPECT_EQ(record.record().Exceptions, nullptr);
  EXPECT_EQ(record.record().ExceptionCount, 0);
  EXPECT_EQ(record.record().Recurrence, nullptr);
}

TEST(Event, TakesTheExceptionsThatAreCountedAndPointedTo) {
  AS_EXCEPTION_T exceptions[3] = {};
  char location[] = "Here";
  exceptions[0].Location = location;
  AS_CALENDAR_T raw = {};
  raw.ExceptionCount = 7;
  EXPECT_TRUE(Event::fromRecord(raw).exceptions.empty());
  raw.Exceptions = exceptions;
  raw.ExceptionCount = 2;
  ASSERT_EQ(Event::fromRecord(raw).exceptions.size(), 2U);
  EXPECT_EQ(*Event::fromRecord(raw).exceptions[0].get<std::string>("Location"), "Here");
  EXPECT_EQ(Event::fromRecord(raw).exceptions[1], FieldValues<AS_EXCEPTION_T>());
  raw.ExceptionCount = 0;
  EXPECT_TRUE(Event::fromRecord(raw).exceptions.empty());
  raw.ExceptionCount = -1;
  EXPECT_TRUE(Event::fromRecord(raw).exceptions.empty());
}

// The field that validate names, and "" when it accepts the event.
std::string refusedField(const Event& event) {
  try {
    event.validate();
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::item);
    EXPECT_FALSE(error.advice().empty());
    return error.story().subject;
  }
  return "";
}

TEST(Event, RefusesWhatCanNotBeSentInAnyOfItsParts) {
  Event valid = event("Tea");
  valid.recurrence.emplace();
  valid.exceptions.resize(1);
  EXPECT_EQ(refusedField(valid), "");
  Event bad = valid;
  bad.fields.set("Location", std::string("a\0b", 3));
  EXPECT_EQ(refusedField(bad), "Location");
  bad = valid;
  bad.recurrence->set("Until", UtcTime{.month = 13});
  EXPECT_EQ(refusedField(bad), "Until");
  bad = valid;
  bad.exceptions[0].set("Categories", List{"a@", "b"});
  EXPECT_EQ(refusedField(bad), "Categories");
}

TEST(Event, RefusesMoreExceptionsThanAServerWouldTake) {
  Event event = test::event("Tea");
  event.exceptions.resize(300);
  EXPECT_EQ(refusedField(event), "");
  event.exceptions.resize(301);
  EXPECT_EQ(refusedField(event), "Exceptions");
}

TEST(Event, CountsTheBytesOfAllItsParts) {
  Event event;
  event.fields.set("Body", std::string(40'000, 'b'));
  event.exceptions.resize(2);
  event.exceptions[0].set("Body", std::string(10'000, 'b'));
  event.exceptions[1].set("Body", std::string(9'920, 'b'));
  EXPECT_EQ(refusedField(event), "");  // with 40 bytes for each exception
  event.exceptions[1].set("Body", std::string(9'921, 'b'));
  EXPECT_EQ(refusedField(event), "Body");
}

TEST(Event, IsCalledByItsSubjectOrTheBestThereIs) {
  Event event;
  EXPECT_EQ(event.displayName(), "");
  event.fields.set("StartTime", UtcTime{.year = 2026, .month = 11, .day = 21, .hour = 9});
  EXPECT_EQ(event.displayName(), "2026-11-21T09:00:00Z");
  event.fields.set("Location", std::string("Here"));
  EXPECT_EQ(event.displayName(), "Here");
  event.fields.set("Subject", std::string("Tea"));
  EXPECT_EQ(event.displayName(), "Tea");
}

class EventInStore : public StoreTest {};

TEST_F(EventInStore, KeepsEveryFieldOfEveryPartThatTheServerSent) {
  const FolderNumber folder = calendar();
  exchange(folder, [](Library& library) { library.add("s1", fullEvent()); });
  reopen();
  EXPECT_EQ(eventOf(item(folder, "s1")), fullEvent());
}

TEST_F(EventInStore, KeepsEveryFieldOfEveryPartThatAPersonSet) {
  const FolderNumber folder = calendar();
  const ItemNumber added = store().addItem(folder, fullEvent());
  reopen();
  EXPECT_EQ(eventOf(added), fullEvent());
}

TEST_F(EventInStore, TellsAbsentFromEmpty) {
  const FolderNumber folder = calendar();
  Event event;
  event.fields.set("Subject", std::string());
  event.fields.set("Categories", List{});
  event.fields.set("Attendees", std::vector<Attendee>{});
  event.fields.set("AllDayEvent", false);
  event.recurrence.emplace();
  event.exceptions.resize(1);
  event.exceptions[0].set("Categories", List{});
  event.fields.set("UID", std::string("U1"));
  EXPECT_EQ(eventOf(store().addItem(folder, event)), event);
  Event bare;
  bare.fields.set("UID", std::string("U2"));
  EXPECT_EQ(eventOf(store().addItem(folder, bare)), bare);
}

TEST_F(EventInStore, KeepsBytesAndTimesAsTheyCame) {
  const FolderNumber folder = calendar();
  Event odd = event("\xff\xfe no UTF-8; DROP TABLE event; --");
  odd.fields.set("EndTime", UtcTime{.year = 1, .month = 99, .day = 0, .hour = 77});
  odd.fields.set("Attendees", std::vector<Attendee>{{"\x80", "\xc3"}});
  exchange(folder, [&](Library& library) { library.add("s1", odd); });
  EXPECT_EQ(eventOf(item(folder, "s1")), odd);
}

TEST_F(EventInStore, IsReplacedWholeByAServersChange) {
  const FolderNumber folder = calendar();
  exchange(folder, [](Library& library) { library.add("s1", fullEvent()); });
  const SyncOutcome outcome = exchange(folder, [](Library& library) { library.change("s1", event("Tea")); });
  EXPECT_EQ(outcome.changed, 1U);
  EXPECT_EQ(eventOf(item(folder, "s1")), event("Tea"));
}

TEST_F(EventInStore, IsAsItWasWhenARunDiesBeforeItsKey) {
  const FolderNumber folder = calendar();
  exchange(folder, [](Library& library) { library.add("s1", fullEvent()); });
  Library library(store(), folder);
  library.change("s1", event("Tea"));
  library.add("s2", fullEvent());
  reopen();
  EXPECT_EQ(eventOf(item(folder, "s1")), fullEvent());
  EXPECT_EQ(store().folder(folder).items, 1U);
}

TEST_F(EventInStore, GoesOutWholeAndIsSettled) {
  const FolderNumber folder = calendar();
  const ItemNumber added = store().addItem(folder, fullEvent());
  Library library(store(), folder);
  void* record = nullptr;
  SERVER_ID id = {};
  UINT32 clientId = 0;
  int kind = -1;
  ASSERT_EQ(store().GetNextChange(folder, &record, &id, &clientId, &kind), 0);
  EXPECT_EQ(kind, AS_CHANGE_ADD);
  EXPECT_EQ(clientId, added);
  EXPECT_EQ(Event::fromRecord(*static_cast<AS_CALENDAR_T*>(record)), fullEvent());
  EXPECT_EQ(library.request(), Commands{});
  library.addResult(added, "s1");
  library.key("k1");
  EXPECT_EQ(library.end().sent, 1U);
  EXPECT_EQ(item(folder, "s1"), added);
  EXPECT_EQ(pending(added), std::nullopt);
}

TEST_F(EventInStore, ComesBackWholeWhenAChangeIsGivenUp) {
  const FolderNumber folder = calendar();
  exchange(folder, [](Library& library) { library.add("s1", fullEvent()); });
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, event("Tea"));
  EXPECT_EQ(eventOf(number), event("Tea"));
  store().discard(number);
  EXPECT_EQ(eventOf(number), fullEvent());
  store().changeItem(number, event("Tea"));
  store().deleteItem(number);
  store().discard(number);
  EXPECT_EQ(eventOf(number), fullEvent());
}

TEST_F(EventInStore, WinsOrLosesAConflictAsTheSettingSays) {
  const FolderNumber folder = calendar();
  exchange(folder, [](Library& library) { library.add("s1", event("Tea")); });
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, event("Coffee"));
  exchange(
      folder, [](Library& library) { library.change("s1", fullEvent()); }, kLocalWins);
  EXPECT_EQ(eventOf(number), event("Coffee"));
  store().discard(number);
  EXPECT_EQ(eventOf(number), fullEvent());
  store().changeItem(number, event("Coffee"));
  EXPECT_EQ(exchange(folder, [](Library& library) { library.change("s1", event("Milk")); }).overwritten, 1U);
  EXPECT_EQ(eventOf(number), event("Milk"));
  store().changeItem(number, event("Coffee"));
  exchange(
      folder, [](Library& library) { library.remove("s1"); }, kLocalWins);
  Library next(store(), folder);
  EXPECT_EQ(next.request(), Commands{addOf(number, "Coffee")});
}

TEST_F(EventInStore, StaysInAFolderThatIsGoneWithItsFailure) {
  const FolderNumber folder = calendar();
  exchange(folder, [](Library& library) { library.add("s1", fullEvent()); });
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, event("Tea"));
  hierarchy(
      HierarchyFetch::changes, [&] { updateFolder("e1", "", 0, AS_FOLDER_DELETED); }, "h2");
  const auto failures = store().failures(folder);
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_EQ(failures[0].name, "Tea");
  EXPECT_EQ(eventOf(number), event("Tea"));
}

class UnansweredEvent : public StoreTest {
 protected:
  // The number of an event that was sent and never answered.
  ItemNumber unanswered(FolderNumber folder, const Event& event) {
    const ItemNumber number = store().addItem(folder, event);
    Library library(store(), folder);
    library.request();
    library.key("k1");
    library.end();
    EXPECT_EQ(pending(number)->state, PendingChange::State::unanswered);
    return number;
  }
  // Whether the event that comes is taken for the one that was sent.
  bool taken(const Event& sent, const Event& comes) {
    const FolderNumber folder = calendar();
    const ItemNumber number = unanswered(folder, sent);
    exchange(folder, [&](Library& library) { library.add("s" + std::to_string(number), comes); });
    const bool same = item(folder, "s" + std::to_string(number)) == number;
    if (!same) store().deleteItem(number);
    return same;
  }
};

TEST_F(UnansweredEvent, IsKnownAgainWhenItComes) {
  const Event sent = fullEvent();
  EXPECT_TRUE(taken(sent, sent));
  Event completed = sent;
  completed.fields.set("DtStamp", UtcTime{.year = 2030});
  completed.fields.set("OrganizerName", std::string("Ann"));
  completed.fields.set("Timezone", ZoneBlock());
  completed.exceptions[0].set("DtStamp", UtcTime{.year = 2030});
  EXPECT_TRUE(taken(sent, completed));
  Event sparse = event("Tea");
  sparse.fields.set("AllDayEvent", false);
  Event richer = event("Tea");
  richer.fields.set("Reminder", std::int32_t{15});
  EXPECT_TRUE(taken(sparse, richer));
}

TEST_F(UnansweredEvent, IsNotTakenForAnotherOne) {
  const Event sent = fullEvent();
  Event likeIt = sent;
  likeIt.fields.set("UID", std::string("another"));
  EXPECT_TRUE(taken(sent, likeIt));  // some servers give UIDs of their own
  Event other = likeIt;
  other.fields.set("EndTime", UtcTime{.year = 2030});
  EXPECT_FALSE(taken(sent, other));
  other = likeIt;
  other.recurrence.reset();
  EXPECT_FALSE(taken(sent, other));
  other = likeIt;
  other.exceptions.pop_back();
  EXPECT_FALSE(taken(sent, other));
  other = likeIt;
  other.exceptions[1].set("Subject", std::string("Tea"));
  EXPECT_FALSE(taken(sent, other));
  other = event("Tea");
  other.fields.set("AllDayEvent", true);
  EXPECT_FALSE(taken(event("Tea"), other));
}

TEST_F(EventInStore, IsRefusedWhereItDoesNotBelong) {
  const FolderNumber folder = calendar();
  EXPECT_THROW(store().addItem(folder, person("Ada")), Error);
  EXPECT_THROW(store().addItem(folder, mail("Tea")), Error);
  EXPECT_THROW(store().addItem(contacts(), event("Tea")), Error);
  const ItemNumber number = store().addItem(folder, event("Tea"));
  EXPECT_THROW(store().changeItem(number, person("Ada")), Error);
  EXPECT_THROW(store().markMail(number, true), Error);
  EXPECT_EQ(eventOf(number).displayName(), "Tea");
}

TEST_F(EventInStore, IsListedWithWhatAListNeeds) {
  const FolderNumber folder = calendar();
  exchange(folder, [](Library& library) {
    library.add("s1", fullEvent());
    library.add("s2", Event());
  });
  std::vector<EventSummary> lines;
  store().listItems(folder, [&](const ItemSummary& line) {
    lines.push_back(std::get<EventSummary>(line.details));
    return true;
  });
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].subject, "value 14");
  EXPECT_EQ(lines[0].location, "value 6");
  EXPECT_EQ(lines[0].start, (UtcTime{.year = 1903, .month = 2, .day = 3, .hour = 4, .minute = 5}));
  EXPECT_EQ(lines[0].end, (UtcTime{.year = 1904, .month = 2, .day = 3, .hour = 4, .minute = 5}));
  EXPECT_TRUE(lines[0].allDay);
  EXPECT_TRUE(lines[0].recurring);
  EXPECT_EQ(lines[1].subject, "");
  EXPECT_EQ(lines[1].start, std::nullopt);
  EXPECT_FALSE(lines[1].allDay);
  EXPECT_FALSE(lines[1].recurring);
}

}  // namespace
}  // namespace airsync::test
