// Splitters for delimited texts: tag paths, and prepared lists of fields with parameters.
#ifndef KROAIRSYNC_DOCUMENT_FIELD_LIST_H
#define KROAIRSYNC_DOCUMENT_FIELD_LIST_H

namespace AIRSYNC_STACK {

/// Copies `source` up to its first separator, or whole, and terminates the copy.
void GetFirstTag(char* destination, const char* source, char separator);

/// What follows the first separator; the empty text when there is none.
const char* RemoveFirstTag(const char* source, char separator);

// A field list is a buffer in which each field is "<", its name, its parameters, each of these ended by a
// NUL, and ">"; a NUL follows the last field:
//
//   "<" "Name" NUL "first" NUL "second" NUL ">" "<" "Other" NUL ">" NUL
//
// Callers prepare such a list themselves: its end is found by its marks alone. A field begins otherwise:
// AS_RESULT_MALFORMED_DOCUMENT.

/// The first field's name; null for a null or empty list.
const char* GetFirstField(const char* text);

/// The next field's name; null after the last one.
const char* GetNextField(const char* field);

/// The field's first parameter; null when it has none.
const char* GetFirstParameter(const char* field);

/// The parameter after this one; null after the last one.
const char* GetNextParameter(const char* parameter);

}  // namespace AIRSYNC_STACK

#endif
