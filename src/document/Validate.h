// Structural checks of element trees by a table of rules: which children an element may have.
#ifndef KROAIRSYNC_DOCUMENT_VALIDATE_H
#define KROAIRSYNC_DOCUMENT_VALIDATE_H

#include "document/Element.h"

namespace AIRSYNC_STACK {

// How many children of one kind an element must have.
enum REQUIREMENTTYPE : int {
  REQUIREMENT_OPTIONAL = 0,     // 0 or 1
  REQUIREMENT_ANY = 1,          // any number
  REQUIREMENT_ONE = 2,          // exactly 1
  REQUIREMENT_ONE_OR_MORE = 3,  // 1 or more
};

// Each returns 0, or AS_RESULT_MALFORMED_DOCUMENT for a document that breaks the rules. None aborts.

/// A whole document: its root must be Sync or FolderSync.
SYNC_RESULT ValidateSyncML(const sml_element* pRoot);

/// An element and, as far as there are rules, everything below it. An element without a rule is valid
/// whatever it contains; the number of children of a kind makes no element invalid.
SYNC_RESULT ValidateSmlElement(const sml_element* pSmlElement);

/// Asserts "0" for a type outside the enumeration.
SYNC_RESULT ValidateNumberOfChildren(REQUIREMENTTYPE type, UINT16 count);

/// How many direct children have one of the tags in `names`, which "|" separates.
UINT16 CountAlternatives(const sml_element* pSmlElement, const char* names);

/// Whether the tag is one of those in `names`.
bool IsAlternative(const char* tag, const char* names);

}  // namespace AIRSYNC_STACK

#endif
