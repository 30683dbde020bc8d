// Recurrence rules, which events and meeting requests carry under partly different tags.
#ifndef KROAIRSYNC_PARSER_RECURRENCE_H
#define KROAIRSYNC_PARSER_RECURRENCE_H

#include "parser/ItemFields.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

/// The rule in the first Recurrence element below `item`, by the table of its tags; null where there is none.
template <unsigned kRows>
AS_RECURRENCE_T* NewRecurrence(const sml_element* item, const AS_FIELD_T<AS_RECURRENCE_T> (&table)[kRows],
                               DateParts& dates) {
  const sml_element* element = SE_Search(item, "Recurrence");
  if (element == nullptr) return nullptr;
  AS_RECURRENCE_T* rule = static_cast<AS_RECURRENCE_T*>(AdapterMalloc(sizeof(AS_RECURRENCE_T)));
  SmlMemset(rule, 0, sizeof(AS_RECURRENCE_T));
  ReadFields(*rule, table, element, dates);
  return rule;
}

template <unsigned kRows>
void ReleaseRecurrence(AS_RECURRENCE_T*& rule, const AS_FIELD_T<AS_RECURRENCE_T> (&table)[kRows]) {
  if (rule != nullptr) ReleaseFields(*rule, table);
  ReleaseField(rule);
}

}  // namespace AIRSYNC_STACK

#endif
