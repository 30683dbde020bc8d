#include "api/Exchange.h"

#include "api/AirSync.h"
#include "http/Communications.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

const UINT16 kLongestRequest = 10000;

}  // namespace

void SendRequest(Communications& comms, ENCODINGTYPE encoding, sml_element* request, const char* command,
                 RequestLimit limit) {
  const UINT16 length = SE_HowLongIsIt(request, encoding, &Communications::CountOutStream, comms);
  if (limit == RequestLimit::k10000Bytes && length > kLongestRequest) {
    AirSync::getInstance()->AbortSync(AS_RESULT_REQUEST_TOO_LARGE);
  }
  const SYNC_RESULT result = comms.Prologue(length, command, ENCODING_WBXML, "POST");
  if (result != AS_RESULT_OK) AirSync::getInstance()->AbortSync(result);
  SE_Serialize(request, encoding, &Communications::Send, comms);
  SE_Destroy(request);
}

sml_element* ReadResponse(Communications& comms, ENCODINGTYPE encoding, const char* root) {
  sml_element* response = SE_Deserialize(encoding, &Communications::Read, comms);
  if (response == nullptr || (root != nullptr && SmlStrcmp(SE_GetTag(response), root) != 0)) {
    AirSync::getInstance()->AbortSync(AS_RESULT_MALFORMED_DOCUMENT);
  }
  return response;
}

sml_element* ReceiveResponse(Communications& comms, ENCODINGTYPE encoding, const char* root) {
  if (comms.ReadHTTPHeader() != AS_RESULT_OK) {
    AirSync::getInstance()->AbortSync(AS_RESULT_TRANSPORT_FAILED);
  }
  return ReadResponse(comms, encoding, root);
}

}  // namespace AIRSYNC_STACK
