// The XML codec: the textual alternative to WBXML, without namespaces, declarations or white space.
#ifndef KROAIRSYNC_DOCUMENT_XML_H
#define KROAIRSYNC_DOCUMENT_XML_H

#include "document/Element.h"

namespace AIRSYNC_STACK {

/// Writes a document through the sink. An attribute's value is written as it is stored, without quotes.
AIRSYNC_API void XMLSerializeSmlDocument(const sml_element* pRoot, ByteChannel sink, Communications& comms);

}  // namespace AIRSYNC_STACK

#endif
