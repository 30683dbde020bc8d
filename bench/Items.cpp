#include "Items.h"

namespace airsync_bench {

namespace {

// By remainder, not by a distribution: those differ between standard libraries.
unsigned Below(std::mt19937& random, unsigned limit) { return static_cast<unsigned>(random() % limit); }

template <std::size_t count>
const char* OneOf(std::mt19937& random, const char* const (&texts)[count]) {
  return texts[Below(random, count)];
}

std::string GivenName(std::mt19937& random) {
  static const char* const kNames[] = {"Ada",        "Bertil", "Chloé",    "Dmitri", "Élodie", "Friedrich",
                                       "Ghislaine",  "Hōmaru", "Ivo",      "Jürgen", "Ксения", "Lars",
                                       "María José", "Niamh",  "Oyelaran", "花子"};
  return OneOf(random, kNames);
}

std::string FamilyName(std::mt19937& random) {
  static const char* const kNames[] = {
      "Adler",   "Bergström", "Castellanos", "Dvořák",   "Eriksson", "Fitzgerald", "Groß",       "Hutchinson",
      "Ivanova", "Jørgensen", "Kowalski",    "Lovelace", "Müller",   "Назарова",   "O'Sullivan", "山田"};
  return OneOf(random, kNames);
}

std::string City(std::mt19937& random) {
  static const char* const kCities[] = {
      "Oslo", "Köln", "Zürich", "Reading", "Saint-Étienne", "Århus", "Santiago de Compostela", "Łódź"};
  return OneOf(random, kCities);
}

// Whole words until the text has at least so many bytes.
std::string Prose(std::mt19937& random, unsigned bytes) {
  static const char* const kWords[] = {"the ", "boat ",    "house ", "key ",       "hängt ",   "behind ",
                                       "a ",   "door, ",   "naïve ", "quarterly ", "figures ", "and ",
                                       "до ",  "meeting ", "on ",    "\r\n"};
  std::string text;
  while (text.size() < bytes) text += OneOf(random, kWords);
  return text;
}

// Most texts are short, some long, few very long.
std::string Body(std::mt19937& random) {
  const unsigned sort = Below(random, 10);
  return Prose(random, sort < 7 ? 20 + Below(random, 100) : sort < 9 ? 300 + Below(random, 500) : 2500);
}

std::string Digits(std::mt19937& random, unsigned count) {
  std::string digits;
  for (unsigned i = 0; i < count; ++i) digits += static_cast<char>('0' + Below(random, 10));
  return digits;
}

std::string TwoDigits(unsigned number) { return {char('0' + number / 10), char('0' + number % 10)}; }

std::string Phone(std::mt19937& random) { return "+49 (" + Digits(random, 3) + ") " + Digits(random, 7); }

std::string Street(std::mt19937& random) {
  return FamilyName(random) + "straße " + std::to_string(1 + Below(random, 180));
}

std::string Address(std::mt19937& random) {
  const std::string name = GivenName(random);
  return "\"" + name + "\" <box" + Digits(random, 4) + "@example.org>";
}

std::string CompactTime(std::mt19937& random) {
  return "20" + TwoDigits(Below(random, 30)) + TwoDigits(1 + Below(random, 12)) +
         TwoDigits(1 + Below(random, 28)) + "T" + TwoDigits(Below(random, 24)) +
         TwoDigits(Below(random, 60)) + "00Z";
}

std::string ExtendedTime(std::mt19937& random) {
  return "20" + TwoDigits(Below(random, 30)) + "-" + TwoDigits(1 + Below(random, 12)) + "-" +
         TwoDigits(1 + Below(random, 28)) + "T" + TwoDigits(Below(random, 24)) + ":" +
         TwoDigits(Below(random, 60)) + ":00.000Z";
}

Node Categories(std::mt19937& random) {
  static const char* const kNames[] = {"Work", "Familie", "Rowing", "Später"};
  Node list = {"Categories", ""};
  for (unsigned i = 0; i <= Below(random, 3); ++i)
    list.children.push_back({"Category", OneOf(random, kNames)});
  return list;
}

std::vector<Node> NewContact(std::mt19937& random) {
  const std::string given = GivenName(random);
  const std::string family = FamilyName(random);
  std::vector<Node> fields = {{"FileAs", family + ", " + given},
                              {"FirstName", given},
                              {"LastName", family},
                              {"Email1Address", Address(random)},
                              {"MobilePhoneNumber", Phone(random)}};
  if (Below(random, 2) == 0) {
    fields.push_back({"CompanyName", family + " & " + FamilyName(random) + " GmbH"});
    fields.push_back({"Department", Prose(random, 12)});
    fields.push_back({"JobTitle", Prose(random, 16)});
    fields.push_back({"BusinessPhoneNumber", Phone(random)});
    fields.push_back({"BusinessFaxNumber", Phone(random)});
    fields.push_back({"BusinessStreet", Street(random)});
    fields.push_back({"BusinessPostalCode", Digits(random, 5)});
    fields.push_back({"BusinessCity", City(random)});
    fields.push_back({"BusinessCountry", "Deutschland"});
    fields.push_back({"WebPage", "https://www.example.org/people/" + Digits(random, 6)});
  }
  if (Below(random, 2) == 0) {
    fields.push_back({"Birthday", ExtendedTime(random)});
    fields.push_back({"HomePhoneNumber", Phone(random)});
    fields.push_back({"HomeStreet", Street(random)});
    fields.push_back({"HomePostalCode", Digits(random, 5)});
    fields.push_back({"HomeCity", City(random)});
    fields.push_back({"Email2Address", Address(random)});
  }
  if (Below(random, 3) == 0) fields.push_back(Categories(random));
  if (Below(random, 5) == 0) {
    fields.push_back({"Children", "", {{"Child", GivenName(random)}, {"Child", GivenName(random)}}});
  }
  if (Below(random, 3) == 0) {
    fields.push_back({"Body", Body(random)});
    fields.push_back({"BodyTruncated", "0"});
  }
  return fields;
}

Node Exceptions(std::mt19937& random) {
  Node list = {"Exceptions", ""};
  for (unsigned i = 0; i <= Below(random, 3); ++i) {
    list.children.push_back({"Exception",
                             "",
                             {{"ExceptionStarttime", CompactTime(random)},
                              {"Starttime", CompactTime(random)},
                              {"Subject", Prose(random, 20)}}});
  }
  return list;
}

std::vector<Node> NewEvent(std::mt19937& random) {
  std::vector<Node> fields = {{"Subject", Prose(random, 10 + Below(random, 50))},
                              {"Starttime", CompactTime(random)},
                              {"Endtime", CompactTime(random)},
                              {"Dtstamp", CompactTime(random)},
                              {"Uid", "040000008200E00074C5B7101A82E008" + Digits(random, 32)},
                              {"Timezone", std::string(230, 'A') + "=="},
                              {"Location", City(random)},
                              {"Busystatus", "2"},
                              {"Sensitivity", "0"},
                              {"Alldayevent", "0"},
                              {"ReminderMinsbefore", "15"},
                              {"OrganizerName", GivenName(random) + " " + FamilyName(random)},
                              {"OrganizerEmail", "box" + Digits(random, 4) + "@example.org"}};
  if (Below(random, 2) == 0) {
    Node list = {"Attendees", ""};
    for (unsigned i = 0; i <= Below(random, 12); ++i) {
      list.children.push_back({"Attendee",
                               "",
                               {{"AttendeeName", GivenName(random) + " " + FamilyName(random)},
                                {"AttendeeEmail", "box" + Digits(random, 4) + "@example.org"}}});
    }
    fields.push_back(list);
  }
  if (Below(random, 4) == 0) {
    fields.push_back({"Recurrence",
                      "",
                      {{"RecurrenceType", "1"},
                       {"RecurrenceInterval", "1"},
                       {"RecurrenceDayofweek", "4"},
                       {"RecurrenceUntil", CompactTime(random)}}});
    fields.push_back(Exceptions(random));
  }
  if (Below(random, 3) == 0) fields.push_back(Categories(random));
  if (Below(random, 2) == 0) fields.push_back({"Body", Body(random)});
  return fields;
}

std::vector<Node> NewMail(std::mt19937& random) {
  const std::string subject = Prose(random, 10 + Below(random, 60));
  std::vector<Node> fields = {{"To", Address(random)},
                              {"From", Address(random)},
                              {"Subject", subject},
                              {"DateReceived", ExtendedTime(random)},
                              {"DisplayTo", GivenName(random) + " " + FamilyName(random)},
                              {"ThreadTopic", subject},
                              {"Importance", "1"},
                              {"Read", Below(random, 2) == 0 ? "0" : "1"},
                              {"MessageClass", "IPM.Note"}};
  if (Below(random, 3) == 0) fields.push_back({"Cc", Address(random) + ", " + Address(random)});
  if (Below(random, 5) == 0) {
    Node list = {"Attachments", ""};
    for (unsigned i = 0; i <= Below(random, 3); ++i) {
      list.children.push_back({"Attachment",
                               "",
                               {{"AttName", Digits(random, 8) + ":0:" + std::to_string(i)},
                                {"AttSize", Digits(random, 5)},
                                {"AttMethod", "1"},
                                {"DisplayName", Prose(random, 12) + ".pdf"}}});
    }
    fields.push_back(list);
  }
  const std::string body = Body(random);
  fields.push_back({"Body", body});
  fields.push_back({"BodySize", std::to_string(body.size())});
  fields.push_back({"BodyTruncated", "0"});
  return fields;
}

}  // namespace

std::vector<Node> NewItem(Kind kind, std::mt19937& random) {
  switch (kind) {
    case Kind::kContacts:
      return NewContact(random);
    case Kind::kEvents:
      return NewEvent(random);
    case Kind::kMails:
      return NewMail(random);
  }
  return {};
}

}  // namespace airsync_bench
