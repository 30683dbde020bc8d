#include "WireItems.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <vector>

namespace airsync_test {

namespace {

// The document.

struct Element {
  int page = 0;
  int token = 0;
  std::optional<std::string> text;
  std::vector<Element> children;
};

class Reader {
 public:
  explicit Reader(const std::string& bytes) : bytes_(bytes) {}

  Element Document() {
    for (const int expected : {0x03, 0x01, 0x6A, 0x00}) {
      if (Next() != expected) throw std::runtime_error("not the head of a document");
    }
    Element root = ReadElement(Tag());
    if (at_ != bytes_.size()) throw std::runtime_error("bytes behind the document");
    return root;
  }

 private:
  int Next() {
    if (at_ == bytes_.size()) throw std::runtime_error("the document has no end");
    return static_cast<unsigned char>(bytes_[at_++]);
  }

  // The next byte that is no page switch.
  int Tag() {
    int byte = Next();
    while (byte == 0x00) {
      page_ = Next();
      byte = Next();
    }
    return byte;
  }

  Element ReadElement(int tag) {
    Element element;
    element.page = page_;
    element.token = tag & 0x3F;
    if ((tag & 0x80) != 0 || element.token < 5) throw std::runtime_error("not a tag of ours");
    if ((tag & 0x40) == 0) return element;
    int byte = Tag();
    if (byte == 0x03) {
      element.text = "";
      for (int c = Next(); c != 0; c = Next()) *element.text += static_cast<char>(c);
      byte = Tag();
    }
    for (; byte != 0x01; byte = Tag()) element.children.push_back(ReadElement(byte));
    return element;
  }

  const std::string& bytes_;
  std::size_t at_ = 0;
  int page_ = 0;
};

// The forms.

std::string TextOf(const Element& element) {
  if (!element.text || !element.children.empty()) throw std::runtime_error("not an element with a text");
  return *element.text;
}

std::string Extended(const std::string& text) {
  if (text.size() != 24 || text[10] != 'T' || text.substr(19) != ".000Z") {
    throw std::runtime_error("no time: " + text);
  }
  return text.substr(0, 10) + " " + text.substr(11, 8);
}

std::string Compact(const std::string& text) {
  if (text.size() != 16 || text[8] != 'T' || text[15] != 'Z') throw std::runtime_error("no time: " + text);
  return text.substr(0, 4) + "-" + text.substr(4, 2) + "-" + text.substr(6, 2) + " " + text.substr(9, 2) +
         ":" + text.substr(11, 2) + ":" + text.substr(13, 2);
}

std::string HexOfBase64(const std::string& text) {
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::string digits = "0123456789ABCDEF";
  std::string hex;
  std::uint32_t bits = 0;
  int count = 0;
  for (const char c : text.substr(0, text.find('='))) {
    const std::size_t six = alphabet.find(c);
    if (six == std::string::npos) throw std::runtime_error("no base64");
    bits = bits << 6 | static_cast<std::uint32_t>(six);
    for (count += 6; count >= 8; count -= 8) {
      const std::uint32_t byte = bits >> (count - 8) & 0xFF;
      hex += digits[byte >> 4];
      hex += digits[byte & 15];
    }
  }
  return hex;
}

enum class Form { kText, kExtended, kCompact, kZone, kList, kAttendees, kRule, kExceptions };

struct Row {
  int token;
  const char* name;
  Form form = Form::kText;  // numbers and flags are their texts, too
  int entryToken = 0;
};

std::string Joined(const Element& list, int entryToken) {
  std::string text;
  for (const Element& entry : list.children) {
    if (entry.token != entryToken) throw std::runtime_error("a stranger in a list");
    text += (text.empty() ? "" : "@@") + TextOf(entry);
  }
  return text;
}

std::string JoinedAttendees(const Element& list) {
  std::string text;
  for (const Element& attendee : list.children) {
    if (attendee.token != 0x08 || attendee.children.size() != 2 || attendee.children[0].token != 0x0A ||
        attendee.children[1].token != 0x09) {
      throw std::runtime_error("not an attendee with name and address");
    }
    text += (text.empty() ? "" : "@@") + TextOf(attendee.children[0]) + "##" + TextOf(attendee.children[1]);
  }
  return text;
}

// The tables, in the order of writing.

const std::vector<Row> kContact = {
    {0x05, "Anniversary", Form::kExtended},
    {0x06, "AssistantName"},
    {0x07, "AssistantPhoneNumber"},
    {0x08, "Birthday", Form::kExtended},
    {0x09, "Body"},
    {0x0C, "Business2PhoneNumber"},
    {0x0D, "BusinessCity"},
    {0x0E, "BusinessCountry"},
    {0x0F, "BusinessPostalCode"},
    {0x10, "BusinessState"},
    {0x11, "BusinessStreet"},
    {0x12, "BusinessFaxNumber"},
    {0x13, "BusinessPhoneNumber"},
    {0x14, "CarPhoneNumber"},
    {0x15, "Categories", Form::kList, 0x16},
    {0x17, "Children", Form::kList, 0x18},
    {0x19, "CompanyName"},
    {0x1A, "Department"},
    {0x1B, "Email1Address"},
    {0x1C, "Email2Address"},
    {0x1D, "Email3Address"},
    {0x1E, "FileAs"},
    {0x1F, "FirstName"},
    {0x20, "Home2PhoneNumber"},
    {0x21, "HomeCity"},
    {0x22, "HomeCountry"},
    {0x23, "HomePostalCode"},
    {0x24, "HomeState"},
    {0x25, "HomeStreet"},
    {0x26, "HomeFaxNumber"},
    {0x27, "HomePhoneNumber"},
    {0x28, "JobTitle"},
    {0x29, "LastName"},
    {0x2A, "MiddleName"},
    {0x2B, "MobilePhoneNumber"},
    {0x2C, "OfficeLocation"},
    {0x2D, "OtherCity"},
    {0x2E, "OtherCountry"},
    {0x2F, "OtherPostalCode"},
    {0x30, "OtherState"},
    {0x31, "OtherStreet"},
    {0x32, "PagerNumber"},
    {0x33, "RadioPhoneNumber"},
    {0x34, "Spouse"},
    {0x35, "Suffix"},
    {0x36, "Title"},
    {0x37, "WebPage"},
    {0x38, "YomiCompanyName"},
    {0x39, "YomiFirstName"},
    {0x3A, "YomiLastName"},
};

const std::vector<Row> kEvent = {
    {0x05, "Timezone", Form::kZone},
    {0x11, "DtStamp", Form::kCompact},
    {0x27, "StartTime", Form::kCompact},
    {0x26, "Subject"},
    {0x28, "UID"},
    {0x1A, "OrganizerName"},
    {0x19, "OrganizerEmail"},
    {0x17, "Location"},
    {0x12, "EndTime", Form::kCompact},
    {0x25, "Sensitivity"},
    {0x0D, "BusyStatus"},
    {0x06, "AllDayEvent"},
    {0x0B, "Body"},
    {0x24, "Reminder"},
    {0x18, "MeetingStatus"},
    {0x07, "Attendees", Form::kAttendees},
    {0x0E, "Categories", Form::kList, 0x0F},
    {0x1B, "Recurrence", Form::kRule},
    {0x14, "Exceptions", Form::kExceptions},
};

const std::vector<Row> kRule = {
    {0x1C, "Type"},        {0x1F, "Interval"},    {0x20, "DayOfWeek"},   {0x21, "DayOfMonth"},
    {0x22, "WeekOfMonth"}, {0x23, "MonthOfYear"}, {0x1E, "Occurrences"}, {0x1D, "Until", Form::kCompact},
};

const std::vector<Row> kException = {
    {0x15, "Deleted"},
    {0x11, "DtStamp", Form::kCompact},
    {0x16, "ExceptionStartTime", Form::kCompact},
    {0x27, "StartTime", Form::kCompact},
    {0x12, "EndTime", Form::kCompact},
    {0x17, "Location"},
    {0x0B, "Body"},
    {0x0D, "BusyStatus"},
    {0x25, "Sensitivity"},
    {0x24, "Reminder"},
    {0x26, "Subject"},
    {0x28, "UID"},
    {0x06, "AllDayEvent"},
    {0x0E, "Categories", Form::kList, 0x0F},
};

void ReadFields(const Element& parent, const std::vector<Row>& rows, const std::string& part,
                ItemFields& fields);

void ReadField(const Element& element, const Row& row, const std::string& part, ItemFields& fields) {
  const std::string name = part + row.name;
  switch (row.form) {
    case Form::kText:
      fields[name] = TextOf(element);
      break;
    case Form::kExtended:
      fields[name] = Extended(TextOf(element));
      break;
    case Form::kCompact:
      fields[name] = Compact(TextOf(element));
      break;
    case Form::kZone:
      fields[name] = HexOfBase64(TextOf(element));
      break;
    case Form::kList:
      fields[name] = Joined(element, row.entryToken);
      break;
    case Form::kAttendees:
      fields[name] = JoinedAttendees(element);
      break;
    case Form::kRule:
      ReadFields(element, kRule, name + ".", fields);
      break;
    case Form::kExceptions:
      fields[name] = "";
      for (std::size_t i = 0; i < element.children.size(); ++i) {
        if (element.children[i].token != 0x13) throw std::runtime_error("not an exception");
        ReadFields(element.children[i], kException, name + "[" + std::to_string(i) + "].", fields);
      }
      fields["ExceptionCount"] = std::to_string(element.children.size());
      break;
  }
}

void ReadFields(const Element& parent, const std::vector<Row>& rows, const std::string& part,
                ItemFields& fields) {
  std::size_t row = 0;
  for (const Element& element : parent.children) {
    while (row < rows.size() && rows[row].token != element.token) ++row;
    if (row == rows.size()) throw std::runtime_error("unknown, or not in its place, in " + part);
    ReadField(element, rows[row++], part, fields);
  }
}

bool AreAllOfPage(const Element& element, int page) {
  for (const Element& child : element.children) {
    if (child.page != page || !AreAllOfPage(child, page)) return false;
  }
  return true;
}

// The data of the only Add or Change.
const Element& DataIn(const Element& sync) {
  const Element* element = &sync;
  for (const int token : {0x05, 0x1C, 0x0F, 0x16}) {  // Sync, Collections, Collection, Commands
    const bool isCommands = token == 0x16;
    if (element->page != 0 || element->token != token || element->children.empty() ||
        (isCommands && element->children.size() != 1)) {
      throw std::runtime_error("not a request with one command");
    }
    element = &element->children.back();
  }
  const Element& command = *element;
  const int idToken = command.token == 0x07 ? 0x0C : 0x0D;  // Add by ClientId, Change by ServerId
  if ((command.token != 0x07 && command.token != 0x08) || command.children.size() != 2 ||
      command.children[0].token != idToken || command.children[1].token != 0x1D) {
    throw std::runtime_error("neither an Add nor a Change");
  }
  return command.children[1];
}

ItemFields Item(const std::string& request, int page, const std::vector<Row>& rows, ItemFields fields) {
  try {
    const Element sync = Reader(request).Document();
    const Element& data = DataIn(sync);
    if (data.page != 0 || !AreAllOfPage(data, page)) throw std::runtime_error("an element of another page");
    ReadFields(data, rows, "", fields);
    return fields;
  } catch (const std::runtime_error& error) {
    return {{"error", error.what()}};
  }
}

}  // namespace

ItemFields ContactOnTheWire(const std::string& request) { return Item(request, 1, kContact, {}); }

ItemFields EventOnTheWire(const std::string& request) {
  return Item(request, 4, kEvent, {{"ExceptionCount", "0"}});
}

}  // namespace airsync_test
