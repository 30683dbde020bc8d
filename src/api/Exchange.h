// One exchange with the server, as every command runs it: send a request document, receive a response
// document.
#ifndef KROAIRSYNC_API_EXCHANGE_H
#define KROAIRSYNC_API_EXCHANGE_H

#include "document/Element.h"

namespace AIRSYNC_STACK {

enum class RequestLimit {
  kNone,
  k10000Bytes,  // a longer body raises AS_RESULT_REQUEST_TOO_LARGE before anything is sent
};

/// Measures the request, sends its head and body, and destroys it. The head declares WBXML whatever
/// `encoding` is.
void SendRequest(Communications& comms, ENCODINGTYPE encoding, sml_element* request, const char* command,
                 RequestLimit limit);

/// Reads the response's document; the caller destroys it. Raises AS_RESULT_MALFORMED_DOCUMENT where the
/// encoding has no reader, and for a document whose root is not `root` (null: any): the parser asserts its
/// roots, and what a server sends must not stop the process.
sml_element* ReadResponse(Communications& comms, ENCODINGTYPE encoding, const char* root);

/// Reads the response's head, then its document.
sml_element* ReceiveResponse(Communications& comms, ENCODINGTYPE encoding, const char* root);

}  // namespace AIRSYNC_STACK

#endif
