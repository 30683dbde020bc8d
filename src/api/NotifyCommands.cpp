// The facade's notification commands, and the server's options.
#include "api/AirSync.h"
#include "api/ErrorFrame.h"
#include "api/Exchange.h"
#include "document/Base64.h"
#include "generator/Generator.h"
#include "http/Communications.h"
#include "parser/Parser.h"
#include "support/InlineText.h"
#include "support/Memory.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

// Where the identifier stands in a decoded notification, and where it ends.
const UINT32 kGuidOffset = 13;
const UINT32 kGuidEnd = kGuidOffset + 16;

// The text form of a GUID in little-endian layout.
void FormatGuid(char* text, const UINT8* guid) {
  SmlSprintf(text, "{%02x%02x%02x%02x-%02x%02x-%02x%02x-%02x%02x-%02x%02x%02x%02x%02x%02x}", guid[3], guid[2],
             guid[1], guid[0], guid[5], guid[4], guid[7], guid[6], guid[8], guid[9], guid[10], guid[11],
             guid[12], guid[13], guid[14], guid[15]);
}

// How many bytes the decoder takes from a base64 text: it ends with the first group that is padded, and the
// padding counts for none.
UINT32 DecodedLength(const char* text) {
  UINT32 length = 0;
  for (; *text != '\0'; text += 4) {
    if (text[3] == '=') return length + (text[2] == '=' ? 1 : 2);
    length += 3;
  }
  return length;
}

}  // namespace

// A request that is not there and a head that could not be sent are not caught here; a refused response head,
// and the server's own refusal, are returned, not raised.
SYNC_RESULT AirSync::NotifyEnable(const unsigned char* carrier, const char* friendlyName,
                                  const char* deviceAddress, unsigned int lifetime,
                                  unsigned char (*&list)[64], unsigned short& count) {
  return RunCommand([&, this]() -> SYNC_RESULT {
    Generator& generator = RequestBuilder();
    FOLDER_INFO** folders = nullptr;
    int folderCount = 0;
    storage_->GetFolderList(&folders, &folderCount);
    sml_element* request =
        generator.NotifyEnable(folders, folderCount, lifetime, friendlyName, deviceAddress, carrier);
    SendRequest(Connection(), encoding_, request, "Notify", RequestLimit::k10000Bytes);
    if (Connection().ReadHTTPHeader() != AS_RESULT_OK) return AS_RESULT_TRANSPORT_FAILED;
    sml_element* response = ReadResponse(Connection(), encoding_, "AirNotify");
    const SYNC_RESULT result = parser_->NotifyEnable(response, storage_, folders, folderCount, list, count);
    SE_Destroy(response);
    return result;
  });
}

SYNC_RESULT AirSync::GetCarrierList(unsigned char (*&list)[64], unsigned short& count) {
  return RunCommand([&, this]() -> SYNC_RESULT {
    sml_element* response =
        RunExchange(RequestBuilder().GetCarrierList(), "Notify", "AirNotify", RequestLimit::kNone);
    parser_->GetCarrierList(response, list, count);
    SE_Destroy(response);
    return AS_RESULT_OK;
  });
}

SYNC_RESULT AirSync::SetDeviceAddress(const unsigned char* carrier, const char* friendlyName,
                                      const char* deviceAddress) {
  return RunCommand([this, carrier, friendlyName, deviceAddress]() -> SYNC_RESULT {
    sml_element* request = RequestBuilder().SetDeviceAddress(carrier, friendlyName, deviceAddress);
    sml_element* response = RunExchange(request, "Notify", "AirNotify", RequestLimit::kNone);
    parser_->SetDeviceAddress(response);
    SE_Destroy(response);
    return AS_RESULT_OK;
  });
}

SYNC_RESULT AirSync::GetOptions(unsigned char* first, int firstLength, unsigned char* second,
                                int secondLength) {
  LogEntry("Into GetOptions");
  return RunCommand([this, first, firstLength, second, secondLength]() -> SYNC_RESULT {
    Communications& comms = Connection();
    const SYNC_RESULT result = comms.Prologue(0, nullptr, ENCODING_NO_BODY, "OPTIONS");
    if (result != AS_RESULT_OK) return result;
    if (comms.BeforeRead(nullptr, 0, false, first, firstLength, second, secondLength) != AS_RESULT_OK) {
      AbortSync(AS_RESULT_TRANSPORT_FAILED);
    }
    return AS_RESULT_OK;
  });
}

SYNC_RESULT AirSync::NotifyRecv(const unsigned char* payload, int length, const _SYNC_KEY& guid) {
  if (length < 1 || payload == nullptr) return AS_RESULT_FOLDER_NOT_SELECTED;
  // It uses neither the connection nor anything else of a running command, whose callback may call it.
  return RunFramed([this, payload, length, &guid]() -> SYNC_RESULT {
    return CheckNotification(payload, static_cast<UINT32>(length), guid);
  });
}

SYNC_RESULT AirSync::CheckNotification(const unsigned char* payload, UINT32 length, const _SYNC_KEY& guid) {
  // The payload has no terminator of its own; the decoder may write one byte past three quarters of it.
  char* text = static_cast<char*>(AdapterMalloc(length + 1));
  SmlMemcpy(text, payload, length);
  text[length] = '\0';
  const UINT32 size = length / 4 * 3 + 1;
  UINT8* decoded = static_cast<UINT8*>(AdapterMalloc(size));
  SmlMemset(decoded, 0, size);
  if (!SmlBase64Decode(reinterpret_cast<char*>(decoded), text)) {
    AdapterFree(text);
    return AS_RESULT_FOLDER_NOT_SELECTED;
  }
  const UINT32 decodedLength = DecodedLength(text);
  if (log_ != nullptr) {
    log_->write(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_DETAIL, "base64 encoded text: ", text);
    log_->write(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_DETAIL, "base64 decoded text: ", decoded, decodedLength);
  }
  AdapterFree(text);
  if (decodedLength < kGuidEnd) return AS_RESULT_FOLDER_NOT_SELECTED;
  char received[1 + 32 + 4 + 1 + 1];
  FormatGuid(received, decoded + kGuidOffset);
  if (log_ != nullptr) log_->write(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_INFO, "guid: ", received);
  const TerminatedText<sizeof(_SYNC_KEY)> expected(guid.text);
  return SmlStrcmp(received, expected.text) == 0 ? AS_RESULT_OK : AS_RESULT_FOLDER_NOT_SELECTED;
}

}  // namespace AIRSYNC_STACK
