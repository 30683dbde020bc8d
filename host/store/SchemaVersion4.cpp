#include "store/SchemaVersion4.h"

namespace airsync {

// Requests whose outcome nobody knows, and the trash.
//
// The CHECKs of the three tables of contents are widened in the schema's text, as SQLite's manual tells it
// for changes that no row can break: to copy the tables would take the rows that hang from them along.
const char* const kSchemaVersion4 = R"(
ALTER TABLE folder RENAME COLUMN fetch_key TO asked_key;  -- under it a request went out, and no answer came yet
ALTER TABLE folder ADD COLUMN one_by_one INTEGER NOT NULL DEFAULT 0 CHECK (one_by_one IN (0, 1));
                               -- 1: each change goes in a request of its own, since one of them made the
                               -- server answer a request with an error
ALTER TABLE item ADD COLUMN deleted_there INTEGER NOT NULL DEFAULT 0 CHECK (deleted_there IN (0, 1));
                               -- 1: the server deleted it; here it goes at the end of the synchronisation
CREATE INDEX item_deleted_there ON item(folder_id) WHERE deleted_there = 1;
ALTER TABLE item ADD COLUMN copy_of INTEGER;
                               -- of an item that was kept beside another one, because both sides had edited
                               -- that: its id
ALTER TABLE pending ADD COLUMN sent_kind TEXT CHECK (sent_kind IN ('add', 'change', 'delete'));
                               -- what the request under sent_key did with the item
ALTER TABLE pending ADD COLUMN blamed INTEGER NOT NULL DEFAULT 0 CHECK (blamed IN (0, 1));
                               -- 1: the server answered with an error to a request that carried it alone
UPDATE pending SET sent_kind = kind WHERE sent_key IS NOT NULL;

-- Items that the server deleted and versions that lost a conflict. The items themselves belong to the folder 0,
-- which nobody sees.
CREATE TABLE trash(
  item_id INTEGER PRIMARY KEY REFERENCES item(id) ON DELETE CASCADE,
  folder_id INTEGER NOT NULL,  -- where it was; perhaps there is no such folder any more
  folder_name TEXT NOT NULL,
  type INTEGER NOT NULL,       -- that folder's type
  reason TEXT NOT NULL,
  since TEXT NOT NULL);
INSERT INTO folder(id, server_id, parent_id, name, type, gone) VALUES (0, NULL, '0', 'trash', -1, 1);

PRAGMA writable_schema = ON;
UPDATE sqlite_master SET sql = replace(sql, 'version IN (0, 1)', 'version IN (0, 1, 2)')
  WHERE type = 'table' AND name IN ('contact', 'event', 'mail');
PRAGMA writable_schema = RESET;
)";

}  // namespace airsync
