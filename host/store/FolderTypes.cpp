#include "store/FolderTypes.h"

#include <array>

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr std::array kTypes = {
    FolderType{1, "user's folder", DATATYPE_EMAIL},
    FolderType{2, "inbox", DATATYPE_EMAIL},
    FolderType{3, "drafts", DATATYPE_EMAIL},
    FolderType{4, "deleted items", DATATYPE_EMAIL},
    FolderType{5, "sent items", DATATYPE_EMAIL},
    FolderType{6, "outbox", DATATYPE_EMAIL},
    FolderType{7, "tasks", std::nullopt},
    FolderType{8, "calendar", DATATYPE_CALENDAR},
    FolderType{9, "contacts", DATATYPE_CONTACTS},
    FolderType{10, "notes", std::nullopt},
    FolderType{11, "journal", std::nullopt},
    FolderType{12, "user's mail", DATATYPE_EMAIL},
    FolderType{13, "user's calendar", DATATYPE_CALENDAR},
    FolderType{14, "user's contacts", DATATYPE_CONTACTS},
    FolderType{15, "user's tasks", std::nullopt},
    FolderType{16, "user's journal", std::nullopt},
    FolderType{17, "user's notes", std::nullopt},
};

constexpr FolderType kUnknown = {0, "unknown", std::nullopt};

}  // namespace

const FolderType& folderType(INT32 number) {
  for (const FolderType& type : kTypes) {
    if (type.number == number) return type;
  }
  return kUnknown;
}

}  // namespace airsync
