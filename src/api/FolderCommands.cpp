// The facade's folder commands: each is one exchange about the hierarchy.
#include "api/AirSync.h"
#include "api/ErrorFrame.h"
#include "api/Exchange.h"
#include "generator/Generator.h"
#include "http/Communications.h"
#include "parser/Parser.h"

namespace AIRSYNC_STACK {

// A request that is not there is not caught here: the generator always builds this one. And a head that is
// reported as not acceptable is returned, not raised.
SYNC_RESULT AirSync::FolderSync(_SYNC_KEY& key) {
  LogEntry("Into FolderSync");
  return RunCommand([this, &key]() -> SYNC_RESULT {
    sml_element* request = RequestBuilder().FolderSync(key);
    SendRequest(Connection(), encoding_, request, "FolderSync", RequestLimit::k10000Bytes);
    if (Connection().ReadHTTPHeader() != AS_RESULT_OK) return AS_RESULT_TRANSPORT_FAILED;
    sml_element* response = ReadResponse(Connection(), encoding_, "FolderSync");
    parser_->FolderSync(response, storage_, key);
    SE_Destroy(response);
    return AS_RESULT_OK;
  });
}

SYNC_RESULT AirSync::GetHierarchy(BASE_FOLDER*& folders, int& count) {
  LogEntry("Into GetHierarchy");
  return RunCommand([this, &folders, &count]() -> SYNC_RESULT {
    const SYNC_RESULT result = Connection().Prologue(0, "GetHierarchy", ENCODING_NO_BODY, "POST");
    sml_element* response = ReceiveResponse(Connection(), encoding_, nullptr);
    parser_->GetHierarchy(response, folders, count);
    SE_Destroy(response);
    return result;
  });
}

SYNC_RESULT AirSync::FolderCreate(_SYNC_KEY& key, BASE_FOLDER* folder) {
  LogEntry("Into FolderCreate");
  return RunCommand([this, &key, folder]() -> SYNC_RESULT {
    sml_element* response = RunExchange(RequestBuilder().FolderCreate(folder, key), "FolderCreate",
                                        "CreateCmd", RequestLimit::k10000Bytes);
    parser_->FolderCreate(response, folder, key);
    SE_Destroy(response);
    return AS_RESULT_OK;
  });
}

SYNC_RESULT AirSync::FolderDelete(const FOLDER_ID& id, _SYNC_KEY& key) {
  LogEntry("Into DeleteCollection");
  return RunCommand([this, &id, &key]() -> SYNC_RESULT {
    sml_element* response = RunExchange(RequestBuilder().FolderDelete(id, key), "FolderDelete", "DeleteCmd",
                                        RequestLimit::k10000Bytes);
    parser_->FolderDelete(response, key);
    SE_Destroy(response);
    return AS_RESULT_OK;
  });
}

SYNC_RESULT AirSync::FolderUpdate(_SYNC_KEY& key, BASE_FOLDER* folder) {
  LogEntry("Into FolderUpdate");
  return RunCommand([this, &key, folder]() -> SYNC_RESULT {
    sml_element* response = RunExchange(RequestBuilder().FolderUpdate(folder, key), "FolderUpdate",
                                        "UpdateCmd", RequestLimit::k10000Bytes);
    parser_->FolderUpdate(response, key);
    SE_Destroy(response);
    return AS_RESULT_OK;
  });
}

}  // namespace AIRSYNC_STACK
