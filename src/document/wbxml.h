// The WBXML codec: WAP Binary XML 1.3, with the protocol's nine code pages.
#ifndef KROAIRSYNC_DOCUMENT_WBXML_H
#define KROAIRSYNC_DOCUMENT_WBXML_H

#include "document/Element.h"

namespace AIRSYNC_STACK {

/// Writes a document through the sink; nothing is allocated or copied. An element whose tag its code page
/// does not hold ends the exchange with AS_RESULT_MALFORMED_DOCUMENT.
void WBXMLSerializeSmlDocument(const sml_element* pRoot, ByteChannel sink, Communications& comms);

/// Reads a document from the source; the caller destroys the tree. Everything malformed ends the exchange
/// with AS_RESULT_MALFORMED_DOCUMENT. Asserts "__null == &In" for an extension token as an attribute's value.
sml_element* WBXMLParseSmlDocument(ByteChannel source, Communications& comms);

/// The number of the code page with that namespace ("POOMCONTACTS:"); 0 for an unknown one.
UINT8 LookupCodePage(const char* text);

}  // namespace AIRSYNC_STACK

#endif
