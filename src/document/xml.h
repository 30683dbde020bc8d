// The XML codec: the textual alternative to WBXML, without namespaces, declarations or white space.
#ifndef KROAIRSYNC_DOCUMENT_XML_H
#define KROAIRSYNC_DOCUMENT_XML_H

#include "document/Element.h"

namespace AIRSYNC_STACK {

/// Writes a document through the sink. An attribute's value is written as it is stored, without quotes.
void XMLSerializeSmlDocument(const sml_element* pRoot, ByteChannel sink, Communications& comms);

/// Reads a document from the source; the caller destroys the tree. SE_Deserialize does not come here: who
/// wants XML read calls this. Everything malformed ends the exchange with AS_RESULT_MALFORMED_DOCUMENT.
/// A numeric reference's ";" stays in the text. Asserts "__null == &In" for a bare ">" in a text.
sml_element* XMLParseSmlDocument(ByteChannel source, Communications& comms);

}  // namespace AIRSYNC_STACK

#endif
