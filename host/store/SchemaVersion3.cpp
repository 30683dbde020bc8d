#include "store/SchemaVersion3.h"

namespace airsync {

// Whoever opens the file with sqlite3 reads these comments, too.
const char* const kSchemaVersion3 = R"(
CREATE TABLE login(  -- whose mailbox this is a copy of; no row before the first login that succeeded
  id INTEGER PRIMARY KEY CHECK (id = 1),
  host TEXT NOT NULL,          -- in lower case, with the port where it is not the usual one
  path TEXT NOT NULL,
  user TEXT NOT NULL,
  domain TEXT NOT NULL);
)";

}  // namespace airsync
