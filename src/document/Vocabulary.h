// The protocol's vocabulary: nine code pages, each a namespace and the tags that have a token there.
#ifndef KROAIRSYNC_DOCUMENT_VOCABULARY_H
#define KROAIRSYNC_DOCUMENT_VOCABULARY_H

#include "support/types.h"

namespace AIRSYNC_STACK {

/// A tag and its token: the code without the attribute and content bits, 0x05 to 0x3F.
struct TagToken {
  char tag[23];
  UINT8 token;
};

/// The tags of a page in their order, which matters: where a tag or a token stands twice, the first counts.
struct TagList {
  const TagToken* entries;
  unsigned count;
};

const UINT8 kCodePages = 9;

/// `page` is below kCodePages.
const char* NamespaceOfPage(UINT8 page);
TagList TagsOfPage(UINT8 page);

/// The tag's token in that page; 0 when the page does not hold it, or there is no such page.
UINT8 TokenOfTag(UINT8 page, const char* tag);

/// The tag that the token (below 0x40) stands for in that page; null when it stands for none.
const char* TagOfToken(UINT8 page, UINT8 token);

}  // namespace AIRSYNC_STACK

#endif
