#include <gtest/gtest.h>

#include "protocol/Status.h"
#include "support/Device.h"

namespace demoserver {
namespace {

class DemoFetch : public WithMail {
 protected:
  SyncAnswer fetch(const std::string& id, int filter = 0) {
    SyncRequest request = mail;
    request.commands = {fetchCommand(id)};
    request.truncation = 0;
    request.filter = filter;
    return device.sync(request);
  }
  std::string putLong(const std::string& body) {
    return state.items.add("f2", {{"Body", body}, {"DateReceived", "2026-11-21T11:00:00Z"}, {"Read", false}})
        .id;
  }
};

TEST_F(DemoFetch, BringsTheWholeItemWhateverTheTruncationIs) {
  const std::string body(200'000, 'x');
  const std::string id = putLong(body);
  device.catchUp(mail);
  EXPECT_EQ(fetch(id).responses,
            Lines{"Fetch ServerId=" + id + " Status=1 Body=" + body +
                  " BodySize=200000 BodyTruncated=0 DateReceived=2026-11-21T11:00:00.000Z Read=0"});
}

TEST_F(DemoFetch, OfWhatIsNotThereGetsStatus8) {
  const std::string gone = put("a");
  const std::string elsewhere = putEvent("e", "2026-11-21T11:00:00Z");
  device.catchUp(mail);
  state.items.remove(gone);
  EXPECT_EQ(fetch("i/99").responses, Lines{"Fetch ServerId=i/99 Status=8"});
  EXPECT_EQ(fetch(gone).responses, Lines{"Fetch ServerId=" + gone + " Status=8"});
  EXPECT_EQ(fetch(elsewhere).responses, Lines{"Fetch ServerId=" + elsewhere + " Status=8"});
}

TEST_F(DemoFetch, OtherChangesGoAlong) {
  const std::string id = put("a");
  device.catchUp(mail);
  const std::string other = putLong("abc");
  const SyncAnswer answer = fetch(id);
  EXPECT_EQ(answer.responses.size(), 1u);
  EXPECT_EQ(answer.commands, Lines{"Add ServerId=" + other + " Body= BodySize=3 BodyTruncated=1 " +
                                   "DateReceived=2026-11-21T11:00:00.000Z Read=0"});
}

TEST_F(DemoFetch, ReachesBeyondTheFilter) {
  const std::string old = put("old", "2020-01-01T00:00:00Z");
  device.sync(mail);
  const SyncAnswer answer = fetch(old, 1);
  EXPECT_EQ(answer.commands, Lines{});
  EXPECT_EQ(answer.responses,
            Lines{"Fetch ServerId=" + old + " Status=1 DateReceived=2020-01-01T00:00:00.000Z Subject=old " +
                  "Importance=1 Read=0"});
}

TEST_F(DemoFetch, WorksForContactsAndEventsToo) {
  const std::string id = putEvent("e", "2026-11-21T11:00:00Z");
  device.catchUp(events);
  SyncRequest request = events;
  request.commands = {fetchCommand(id)};
  EXPECT_EQ(device.sync(request).responses,
            Lines{"Fetch ServerId=" + id + " Status=1 Endtime=20261121T110000Z Subject=e"});
}

TEST_F(DemoFetch, ComesAHundredTimesInOneRequestAtMost) {
  const std::string id = put("a");
  device.catchUp(mail);
  SyncRequest request = mail;
  request.commands.assign(100, fetchCommand(id));
  EXPECT_EQ(device.sync(request).responses.size(), 100u);
  request.commands.push_back(fetchCommand(id));
  EXPECT_THROW(device.sync(request), BadRequest);
}

TEST_F(DemoFetch, ChangesNothing) {
  const std::string id = put("a");
  device.catchUp(mail);
  fetch(id);
  EXPECT_EQ(device.sync(mail).commands, Lines{});
}

}  // namespace
}  // namespace demoserver
