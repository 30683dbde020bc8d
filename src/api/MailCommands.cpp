// The facade's mail commands: whole messages, whose bytes go out and come in as they stand.
#include "api/AirSync.h"
#include "api/ErrorFrame.h"
#include "generator/Generator.h"
#include "http/Communications.h"
#include "support/InlineText.h"
#include "support/Porting.h"
#include "support/ServerId.h"

namespace AIRSYNC_STACK {

namespace {

const char kSaveInSent[] = "&SaveInSent=T";

// A command's text, with its query parameters. One that does not fit is refused before anything is sent.
class CommandText {
 public:
  CommandText() { text_[0] = '\0'; }

  void Append(const char* part) {
    const UINT32 partLength = SmlStrlen(part);
    if (partLength >= sizeof(text_) - length_) {
      AirSync::getInstance()->AbortSync(AS_RESULT_INVALID_ARGUMENT);
    }
    SmlMemcpy(text_ + length_, part, partLength + 1);
    length_ += partLength;
  }

  const char* Text() const { return text_; }

 private:
  char text_[1024];
  UINT32 length_ = 0;
};

void AppendReference(CommandText& command, const SERVER_ID& item, const FOLDER_ID& collection) {
  char id[ServerId::kLength + 1];
  command.Append("&ItemId=");
  command.Append(ServerId::toChar(item, id));
  command.Append("&CollectionId=");
  command.Append(TerminatedText<sizeof(FOLDER_ID)>(collection.text).text);
}

}  // namespace

SYNC_RESULT AirSync::SendMail(const unsigned char* message, unsigned int length, bool saveInSent, bool raw) {
  LogEntry("Into SendMail");
  return RunCommand([this, message, length, saveInSent, raw]() -> SYNC_RESULT {
    CommandText command;
    command.Append("SendMail");
    if (saveInSent) command.Append(kSaveInSent);
    return SendMessage(command.Text(), message, length, raw);
  });
}

// The interface takes identifiers by value.
SYNC_RESULT AirSync::SmartReply(const unsigned char* message, unsigned int length, bool saveInSent,
                                // cppcheck-suppress passedByValue
                                SERVER_ID item, FOLDER_ID collection, bool raw) {
  LogEntry("Into SmartReply");
  return SmartCommand("SmartReply", message, length, saveInSent, item, collection, raw);
}

SYNC_RESULT AirSync::SmartForward(const unsigned char* message, unsigned int length, bool saveInSent,
                                  // cppcheck-suppress passedByValue
                                  SERVER_ID item, FOLDER_ID collection, bool raw) {
  LogEntry("Into SmartForward");
  return SmartCommand("SmartForward", message, length, saveInSent, item, collection, raw);
}

SYNC_RESULT AirSync::SmartCommand(const char* name, const unsigned char* message, unsigned int length,
                                  bool saveInSent, const SERVER_ID& item, const FOLDER_ID& collection,
                                  bool raw) {
  return RunCommand([this, name, message, length, saveInSent, &item, &collection, raw]() -> SYNC_RESULT {
    CommandText command;
    command.Append(name);
    AppendReference(command, item, collection);
    if (saveInSent) command.Append(kSaveInSent);
    return SendMessage(command.Text(), message, length, raw);
  });
}

// The response's body is not read: its head tells what became of the message.
SYNC_RESULT AirSync::SendMessage(const char* command, const unsigned char* message, unsigned int length,
                                 bool raw) {
  if (length > INT32_MAX || (message == nullptr && length != 0)) AbortSync(AS_RESULT_INVALID_ARGUMENT);
  Communications& comms = Connection();
  const SYNC_RESULT result = comms.Prologue(length, command, ENCODING_RAW_MESSAGE, "POST");
  if (result != AS_RESULT_OK) AbortSync(result);
  // Neither path writes into the message.
  UINT8* bytes = const_cast<UINT8*>(message);
  const int count = static_cast<int>(length);
  if (raw) {
    comms.SendFile(bytes, count);
  } else {
    comms.Send(bytes, count);
  }
  comms.ReadHTTPHeader();
  return AS_RESULT_OK;
}

SYNC_RESULT AirSync::GetAttachment(const char* name, unsigned char* buffer, unsigned int length, bool raw) {
  LogEntry("Into GetAttachment");
  return RunCommand([this, name, buffer, length, raw]() -> SYNC_RESULT {
    const bool noRoom = buffer == nullptr && length != 0;
    if (name == nullptr || noRoom || length > INT32_MAX) AbortSync(AS_RESULT_INVALID_ARGUMENT);
    CommandText command;
    command.Append("GetAttachment");
    command.Append("&");
    command.Append("AttachmentName=");
    command.Append(name);
    Communications& comms = Connection();
    const SYNC_RESULT result = comms.Prologue(0, command.Text(), ENCODING_NO_BODY, "POST");
    if (result != AS_RESULT_OK) AbortSync(result);
    comms.BeforeRead(buffer, length, raw, nullptr, 0, nullptr, 0);
    const int count = static_cast<int>(length);
    if (raw) {
      comms.ReadFile(buffer, count);
    } else {
      comms.Read(buffer, count);
    }
    return AS_RESULT_OK;
  });
}

}  // namespace AIRSYNC_STACK
