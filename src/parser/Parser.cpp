// The parser's frame: handling children, and what all responses share.
#include "parser/Parser.h"

#include "api/AirSync.h"

namespace AIRSYNC_STACK {

Parser::Parser(Log* log) : log_(log) {}

void Parser::ForgetTrackedMemory() {
  carrierList_ = nullptr;
  carrierCount_ = 0;
  hierarchy_ = nullptr;
  hierarchyCapacity_ = 0;
  hierarchyCount_ = 0;
  ForgetArguments();
}

void Parser::Begin(UINT32 arguments) {
  arguments_ = arguments;
  folder_ = nullptr;
  folderList_ = nullptr;
  folderListCount_ = 0;
  move_ = {};
}

void Parser::HandleChildren(const sml_element* parent, const char* tag) {
  SE_ForEach(parent, tag, &Parser::ChildHandler, *this);
}

char* Parser::ProcessDataElement(const sml_element* parent, const char* tag) {
  const sml_element* element = SE_Search(parent, tag);
  return element == nullptr ? nullptr : SE_GetValue(element);
}

const char* Parser::TextOf(const sml_element* element) {
  const char* text = SE_GetValue(element);
  return text == nullptr ? "" : text;
}

const char* Parser::ChildText(const sml_element* parent, const char* tag) {
  const char* text = SE_GetValueOfChild(parent, tag);
  return text == nullptr ? "" : text;
}

void Parser::CheckCancelled() const {
  AirSync* airSync = AirSync::getInstance();
  if (airSync->CancelRequested()) airSync->AbortSync(AS_RESULT_CANCELLED);
}

void Parser::RaiseUnlessSuccess(SYNC_RESULT family) const {
  if (status_ != 1) AirSync::getInstance()->AbortSync(family | static_cast<UINT32>(status_));
}

void Parser::LogLine(AS_LOG_LEVEL_T level, const char* text) const {
  if (log_ != nullptr) log_->write(AS_LOG_SOURCE_PARSER, level, text);
}

void Parser::LogFlag(const char* label, bool flag) const {
  if (log_ != nullptr) log_->write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, label, flag);
}

}  // namespace AIRSYNC_STACK
