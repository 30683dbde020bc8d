#include "store/ItemStatus.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr SYNC_RESULT kStatusMask = 0xffff;

struct Sentence {
  INT32 status;
  const char* text;
};

constexpr Sentence kSentences[] = {
    {2, "The server does not speak this version of the protocol"},
    {3, "The server does not know the folder's key any more"},
    {4, "The server found the item malformed"},
    {5, "The server failed while it stored the item"},
    {6, "The server could not convert the item"},
    {7, "The item was changed on the server too, and the server kept its own version"},
    {kStatusNotFound, "The server does not have the item any more"},
    {9, "The mailbox has no room for the item"},
    {12, "The folder hierarchy has changed"},
};

}  // namespace

INT32 itemStatus(SYNC_RESULT result) { return static_cast<INT32>(result & kStatusMask); }

std::string itemStatusText(INT32 status) {
  std::string text = "The server refused the item";
  for (const Sentence& sentence : kSentences) {
    if (sentence.status == status) text = sentence.text;
  }
  return text + " (status " + std::to_string(status) + ").";
}

}  // namespace airsync
