#include "document/Validate.h"

#include "document/FieldList.h"
#include "document/Utilities.h"
#include "support/Assert.h"

namespace AIRSYNC_STACK {

namespace {

struct Requirement {
  const char* childNames;  // alternatives, separated by "|"; null ends a list
  const char* nameSpace;   // not consulted
  REQUIREMENTTYPE type;
};

const unsigned kMostRequirements = 10;

struct Rule {
  const char* element;
  Requirement requirements[kMostRequirements + 1];
};

constexpr char kSync[] = "AirSync:";
constexpr char kFolders[] = "FolderHierarchy:";

// The first rule with an element's name applies. A rule without requirements is a rule: no child is allowed.
// "DeleteAsMoves" is not how the vocabulary spells that element: one named so is not allowed in a Collection.
constexpr Rule kRules[] = {
    {"Collection",
     {{"Class", kSync, REQUIREMENT_ONE},
      {"SyncKey", kSync, REQUIREMENT_ONE},
      {"CollectionId", kSync, REQUIREMENT_OPTIONAL},
      {"DeleteAsMoves", kSync, REQUIREMENT_OPTIONAL},
      {"GetChanges", kSync, REQUIREMENT_OPTIONAL},
      {"WindowSize", kSync, REQUIREMENT_OPTIONAL},
      {"Options", kSync, REQUIREMENT_OPTIONAL},
      {"Status", kSync, REQUIREMENT_OPTIONAL},
      {"MoreAvailable", kSync, REQUIREMENT_OPTIONAL},
      {"Commands", kSync, REQUIREMENT_OPTIONAL}}},
    {"Collections", {{"Collection", kSync, REQUIREMENT_ONE}}},
    {"Commands",
     {{"Add", kSync, REQUIREMENT_ANY},
      {"Delete", kSync, REQUIREMENT_ANY},
      {"Change", kSync, REQUIREMENT_ANY},
      {"Fetch", kSync, REQUIREMENT_ANY}}},
    {"Sync", {{"Version", kSync, REQUIREMENT_ONE}, {"Collections", kSync, REQUIREMENT_ONE}}},
    {"Class", {}},
    {"Change",
     {{"ServerId", kSync, REQUIREMENT_ONE},
      {"ApplicationData", kSync, REQUIREMENT_OPTIONAL},
      {"Status", kSync, REQUIREMENT_OPTIONAL}}},
    {"Delete", {{"ServerId", kSync, REQUIREMENT_ONE}, {"Status", kSync, REQUIREMENT_OPTIONAL}}},
    {"ServerId", {}},
    {"ClientId", {}},
    {"ApplicationData", {}},
    {"Status", {}},
    {"SyncKey", {}},
    {"CollectionId", {}},
    {"DeleteAsMoves", {}},
    {"Options",
     {{"FilterType", kSync, REQUIREMENT_OPTIONAL},
      {"Truncation", kSync, REQUIREMENT_OPTIONAL},
      {"Conflict", kSync, REQUIREMENT_OPTIONAL}}},
    {"FolderSync",
     {{"Status", kFolders, REQUIREMENT_OPTIONAL},
      {"SyncKey", kFolders, REQUIREMENT_ONE},
      {"Changes", kFolders, REQUIREMENT_OPTIONAL}}},
    {"Changes", {{"Count", kFolders, REQUIREMENT_OPTIONAL}, {"Add", kFolders, REQUIREMENT_ONE}}},
};

const Rule* FindRule(const char* tag) {
  for (const Rule& rule : kRules) {
    if (SameText(rule.element, tag)) return &rule;
  }
  return nullptr;
}

bool Allows(const Rule& rule, const char* tag) {
  for (const Requirement* it = rule.requirements; it->childNames; ++it) {
    if (IsAlternative(tag, it->childNames)) return true;
  }
  return false;
}

// The length of the first alternative.
UINT32 FirstLength(const char* names) {
  const char* const separator = SmlStrchr(names, '|');
  return separator ? static_cast<UINT32>(separator - names) : SmlStrlen(names);
}

}  // namespace

bool IsAlternative(const char* tag, const char* names) {
  const UINT32 length = SmlStrlen(tag);
  for (; *names; names = RemoveFirstTag(names, '|')) {
    if (FirstLength(names) == length && SmlStrncmp(names, tag, length) == 0) return true;
  }
  return false;
}

UINT16 CountAlternatives(const sml_element* pSmlElement, const char* names) {
  UINT16 count = 0;
  for (UINT16 i = 0; i < SE_GetNumberOfChildren(pSmlElement); ++i) {
    const char* const tag = SE_GetTag(SE_GetNthChild(pSmlElement, i));
    if (tag && IsAlternative(tag, names)) ++count;
  }
  return count;
}

SYNC_RESULT ValidateNumberOfChildren(REQUIREMENTTYPE type, UINT16 count) {
  bool valid = false;
  switch (type) {
    case REQUIREMENT_OPTIONAL:
      valid = count < 2;
      break;
    case REQUIREMENT_ANY:
      valid = true;
      break;
    case REQUIREMENT_ONE:
      valid = count == 1;
      break;
    case REQUIREMENT_ONE_OR_MORE:
      valid = count >= 1;
      break;
    default:
      assert(0);
  }
  return valid ? AS_RESULT_OK : AS_RESULT_MALFORMED_DOCUMENT;
}

SYNC_RESULT ValidateSmlElement(const sml_element* pSmlElement) {
  const Rule* const rule = FindRule(SE_GetTag(pSmlElement));
  if (!rule) return AS_RESULT_OK;
  for (const Requirement* it = rule->requirements; it->childNames; ++it) {
    // Deliberate: a wrong count makes no element invalid. Servers leave out what the rules ask for.
    static_cast<void>(ValidateNumberOfChildren(it->type, CountAlternatives(pSmlElement, it->childNames)));
  }
  for (UINT16 i = 0; i < SE_GetNumberOfChildren(pSmlElement); ++i) {
    const sml_element* const child = SE_GetNthChild(pSmlElement, i);
    const char* const tag = SE_GetTag(child) ? SE_GetTag(child) : "";
    if (!Allows(*rule, tag)) return AS_RESULT_MALFORMED_DOCUMENT;
    if (ValidateSmlElement(child) != AS_RESULT_OK) return AS_RESULT_MALFORMED_DOCUMENT;
  }
  return AS_RESULT_OK;
}

SYNC_RESULT ValidateSyncML(const sml_element* pRoot) {
  if (SameText(SE_GetTag(pRoot), "Sync") || SameText(SE_GetTag(pRoot), "FolderSync")) {
    return ValidateSmlElement(pRoot);
  }
  return AS_RESULT_MALFORMED_DOCUMENT;
}

}  // namespace AIRSYNC_STACK
