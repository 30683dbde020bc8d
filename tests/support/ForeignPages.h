// Answers whose "xmlns" brings elements to handlers of other commands. Each read through null once.
#ifndef TESTS_SUPPORT_FOREIGN_PAGES_H
#define TESTS_SUPPORT_FOREIGN_PAGES_H

namespace airsync_test {

struct ForeignPageAnswer {
  const char* name;
  const char* command;   // of ApiCommands
  const char* document;  // as HexAndText takes it; its string table is 'xmlns'
};

inline constexpr ForeignPageAnswer kForeignPageAnswers[] = {
    {"foldersync-deletes-item", "FolderSync",
     "03 01 6A 06 'xmlns' 00 00 07 56 4C 03 '1' 00 01"
     "  CE 04 00 03 'Sync:' 00 01 50 48 03 'x' 00 01 01 01 01"},
    {"notification-answers-sync", "NotifyEnable",
     "03 01 6A 06 'xmlns' 00 00 03 C5 04 00 03 'Sync:' 00 01 50 03 '1' 00 01"
     "  00 00 46 49 4D 03 'x' 00 01 01 01 01"},
    {"estimate-with-collection-of-sync", "GetItemEstimate",
     "03 01 6A 06 'xmlns' 00 00 06 45 CD 04 00 03 'Sync:' 00 01 48 4A 03 '5' 00 01 01 01 01"},
    {"notification-fills-hierarchy", "NotifyEnable",
     "03 01 6A 06 'xmlns' 00 00 03 45 50 03 '1' 00 01"
     "  D1 04 00 03 'FolderHierarchy:' 00 01 4B 4C 03 'x' 00 01 01 01 01"},
};

}  // namespace airsync_test

#endif
