#include "store/SchemaVersion2.h"

namespace airsync {

// Whoever opens the file with sqlite3 reads these comments, too: SQLite keeps them (".schema event").
//
// The columns are called like the fields of records, and like the members of their JSON. What holds for the
// table `contact` holds for `event` and `mail`: one row per item and version. All other tables here hang from
// those rows by item_id and version.
const char* const kSchemaVersion2 = R"(
ALTER TABLE folder ADD COLUMN fetch_key TEXT;  -- under it an item was asked for, and no answer came yet

CREATE TABLE event(  -- the items of folders for events
  item_id INTEGER NOT NULL REFERENCES item(id) ON DELETE CASCADE,
  version INTEGER NOT NULL CHECK (version IN (0, 1)),  -- 0: as people see it, with their changes
                               -- 1: as the server has it, kept while a local change waits
  -- texts are bytes as they came; times are UTC, like 2026-11-21T09:00:00Z; NULL: the event does not have it
  "Subject" TEXT,
  "Location" TEXT,
  "StartTime" TEXT,
  "EndTime" TEXT,
  "AllDayEvent" INTEGER,       -- 0, 1
  "Reminder" INTEGER,          -- minutes before the start
  "Body" TEXT,
  "BodyTruncated" INTEGER,     -- 1: the server kept back a part of the body
  "BusyStatus" INTEGER,
  "Sensitivity" INTEGER,
  "Categories" INTEGER,        -- their number; they are in event_category
  "OrganizerName" TEXT,
  "OrganizerEmail" TEXT,
  "MeetingStatus" INTEGER,
  "Attendees" INTEGER,         -- their number; they are in event_attendee
  "UID" TEXT,                  -- the event's own identifier, the same on all calendars
  "DtStamp" TEXT,              -- when it was changed last
  "Timezone" BLOB,             -- the protocol's time-zone structure, 172 bytes
  PRIMARY KEY (item_id, version));

CREATE TABLE event_category(
  item_id INTEGER NOT NULL,
  version INTEGER NOT NULL,
  position INTEGER NOT NULL,   -- from 0
  value TEXT NOT NULL,
  PRIMARY KEY (item_id, version, position),
  FOREIGN KEY (item_id, version) REFERENCES event(item_id, version) ON DELETE CASCADE ON UPDATE CASCADE
) WITHOUT ROWID;

CREATE TABLE event_attendee(
  item_id INTEGER NOT NULL,
  version INTEGER NOT NULL,
  position INTEGER NOT NULL,   -- from 0
  name TEXT NOT NULL,
  email TEXT NOT NULL,
  PRIMARY KEY (item_id, version, position),
  FOREIGN KEY (item_id, version) REFERENCES event(item_id, version) ON DELETE CASCADE ON UPDATE CASCADE
) WITHOUT ROWID;

CREATE TABLE event_recurrence(  -- the rule of a series; an event without a row happens once
  item_id INTEGER NOT NULL,
  version INTEGER NOT NULL,
  "Type" INTEGER NOT NULL,
  "Interval" INTEGER,
  "Occurrences" INTEGER,
  "DayOfWeek" INTEGER,         -- bit mask
  "DayOfMonth" INTEGER,
  "WeekOfMonth" INTEGER,
  "MonthOfYear" INTEGER,
  "Until" TEXT,
  PRIMARY KEY (item_id, version),
  FOREIGN KEY (item_id, version) REFERENCES event(item_id, version) ON DELETE CASCADE ON UPDATE CASCADE
) WITHOUT ROWID;

CREATE TABLE event_exception(  -- an occurrence of a series that differs from the others, or is cancelled
  item_id INTEGER NOT NULL,
  version INTEGER NOT NULL,
  position INTEGER NOT NULL,   -- from 0
  "ExceptionStartTime" TEXT,   -- the start that the occurrence would have had
  "Deleted" INTEGER,           -- 1: it is cancelled
  "Subject" TEXT,
  "Location" TEXT,
  "StartTime" TEXT,
  "EndTime" TEXT,
  "AllDayEvent" INTEGER,
  "Reminder" INTEGER,
  "Body" TEXT,
  "BusyStatus" INTEGER,
  "Sensitivity" INTEGER,
  "Categories" INTEGER,        -- their number; they are in event_exception_category
  "UID" TEXT,
  "DtStamp" TEXT,
  PRIMARY KEY (item_id, version, position),
  FOREIGN KEY (item_id, version) REFERENCES event(item_id, version) ON DELETE CASCADE ON UPDATE CASCADE
) WITHOUT ROWID;

CREATE TABLE event_exception_category(
  item_id INTEGER NOT NULL,
  version INTEGER NOT NULL,
  exception INTEGER NOT NULL,  -- event_exception.position
  position INTEGER NOT NULL,   -- from 0
  value TEXT NOT NULL,
  PRIMARY KEY (item_id, version, exception, position),
  FOREIGN KEY (item_id, version, exception) REFERENCES event_exception(item_id, version, position)
    ON DELETE CASCADE ON UPDATE CASCADE
) WITHOUT ROWID;

CREATE TABLE mail(  -- the items of folders for mail
  item_id INTEGER NOT NULL REFERENCES item(id) ON DELETE CASCADE,
  version INTEGER NOT NULL CHECK (version IN (0, 1)),  -- as in event
  "From" TEXT,
  "To" TEXT,
  "Cc" TEXT,
  "ReplyTo" TEXT,
  "DisplayTo" TEXT,
  "Subject" TEXT,
  "ThreadTopic" TEXT,
  "DateReceived" TEXT,
  "Read" INTEGER NOT NULL,     -- 0, 1
  "Importance" INTEGER NOT NULL,
  "MessageClass" TEXT,
  "Body" TEXT,
  "BodySize" INTEGER,          -- of the whole body, in bytes
  "BodyTruncated" INTEGER,     -- 1: the server kept back a part of the body
  PRIMARY KEY (item_id, version));

CREATE TABLE mail_attachment(  -- what is attached; the contents stay on the server
  item_id INTEGER NOT NULL,
  version INTEGER NOT NULL,
  position INTEGER NOT NULL,   -- from 0
  "Name" TEXT,
  "DisplayName" TEXT,
  "Size" INTEGER NOT NULL,     -- in bytes, as the server told it
  "Method" INTEGER NOT NULL,
  "OID" TEXT,                  -- the server's handle for fetching it
  PRIMARY KEY (item_id, version, position),
  FOREIGN KEY (item_id, version) REFERENCES mail(item_id, version) ON DELETE CASCADE ON UPDATE CASCADE
) WITHOUT ROWID;

CREATE TABLE mail_meeting(  -- the meeting that the mail invites to
  item_id INTEGER NOT NULL,
  version INTEGER NOT NULL,
  "Organizer" TEXT,
  "Location" TEXT,
  "StartTime" TEXT,
  "EndTime" TEXT,
  "AllDayEvent" INTEGER,
  "Reminder" INTEGER,
  "BusyStatus" INTEGER,
  "Sensitivity" INTEGER,
  "Categories" INTEGER,        -- their number; they are in mail_meeting_category
  "InstanceType" INTEGER NOT NULL,
  "RecurrenceId" TEXT,
  "ResponseRequested" INTEGER NOT NULL,
  "GlobalObjId" TEXT,
  "DtStamp" TEXT,
  "Timezone" BLOB,             -- the protocol's time-zone structure, 172 bytes
  PRIMARY KEY (item_id, version),
  FOREIGN KEY (item_id, version) REFERENCES mail(item_id, version) ON DELETE CASCADE ON UPDATE CASCADE
) WITHOUT ROWID;

CREATE TABLE mail_meeting_category(
  item_id INTEGER NOT NULL,
  version INTEGER NOT NULL,
  position INTEGER NOT NULL,   -- from 0
  value TEXT NOT NULL,
  PRIMARY KEY (item_id, version, position),
  FOREIGN KEY (item_id, version) REFERENCES mail_meeting(item_id, version)
    ON DELETE CASCADE ON UPDATE CASCADE
) WITHOUT ROWID;

CREATE TABLE mail_meeting_recurrence(  -- the rule by which the meeting repeats
  item_id INTEGER NOT NULL,
  version INTEGER NOT NULL,
  "Type" INTEGER NOT NULL,
  "Interval" INTEGER,
  "Occurrences" INTEGER,
  "DayOfWeek" INTEGER,         -- bit mask
  "DayOfMonth" INTEGER,
  "WeekOfMonth" INTEGER,
  "MonthOfYear" INTEGER,
  "Until" TEXT,
  PRIMARY KEY (item_id, version),
  FOREIGN KEY (item_id, version) REFERENCES mail_meeting(item_id, version)
    ON DELETE CASCADE ON UPDATE CASCADE
) WITHOUT ROWID;
)";

}  // namespace airsync
