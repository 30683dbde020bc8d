// A state in memory with the folders of a mail account, and requests of the commands that work on mails.
#pragma once

#include <gtest/gtest.h>

#include "protocol/Delivery.h"
#include "protocol/MoveItems.h"
#include "support/Device.h"

namespace demoserver {

struct Mailroom : ::testing::Test {
  State state{":memory:"};
  Posting posting{"demo@example.com", Moment(std::chrono::seconds(1'795'251'600)), false};  // 9:00 that day

  Mailroom() {
    state.folders.create("0", "Inbox", kInbox, "f2");
    state.folders.create("0", "Deleted Items", kDeletedItems, "f4");
    state.folders.create("0", "Sent Items", kSentItems, "f5");
    state.folders.create("0", "Tasks", kTasks, "f7");
    state.folders.create("0", "Calendar", kCalendar, "f8");
    state.folders.create("0", "Contacts", kContacts, "f9");
    state.folders.create("0", "Privat", kUserMail, "m%2F1");
  }

  std::string put(const std::string& subject, const std::string& folder = "f2") {
    return state.items.add(folder, {{"Subject", subject}, {"Importance", 1}, {"Read", false}}).id;
  }
  std::vector<nlohmann::json> records(const std::string& folder) {
    std::vector<nlohmann::json> found;
    for (const Item& item : state.items.list(folder)) found.push_back(item.record);
    return found;
  }
};

struct MoveOf {
  std::string id, from, to;
};

inline Element moveRequest(const std::vector<MoveOf>& moves) {
  Element request(Page::Move, "Moves");
  for (const MoveOf& each : moves) {
    Element& move = request.add("Move");
    move.add("SrcMsgId", each.id);
    move.add("SrcFldId", each.from);
    move.add("DstFldId", each.to);
  }
  return request;
}

}  // namespace demoserver
