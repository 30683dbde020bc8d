#include "protocol/Notify.h"

#include <gtest/gtest.h>

#include "protocol/Status.h"
#include "support/Mailroom.h"

namespace demoserver {
namespace {

using Fields = std::vector<std::pair<std::string_view, std::string>>;

struct NotifyRequest {
  std::string lifetime = {};  // no element when it is empty
  Fields device = {};
  std::vector<std::string> folders = {};
};

class DemoNotify : public Mailroom {
 protected:
  Element ask(const NotifyRequest& asked) {
    Element request(Page::Notify, "AirNotify");
    if (!asked.lifetime.empty()) request.add("Lifetime", asked.lifetime);
    Element& info = request.add("DeviceInfo");
    for (const auto& [tag, text] : asked.device) info.add(tag, text);
    if (!asked.folders.empty()) {
      Element& enable = request.add("Enable");
      for (const std::string& folder : asked.folders) enable.add("Folder").add("ServerId", folder);
    }
    return runNotify(state, "d1", request);
  }
  NotifySetup setup() { return state.devices.find("d1").value_or(NotifySetup{}); }

  Fields byMail = {{"FriendlyName", "Ada's"}, {"DeviceAddress", "ada@example.org"}};
};

TEST_F(DemoNotify, ListsTheCarriers) {
  const Element answer = ask({});
  EXPECT_EQ(answer.textOf("Status"), "1");
  const Element* list = answer.child("ValidCarrierProfiles");
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->children.size(), 4u);
  EXPECT_TRUE(list->children[0].is(Page::Notify, "CarrierProfile"));
  EXPECT_EQ(list->children[0].text, "Demo Mobile");
  EXPECT_FALSE(state.devices.find("d1"));
}

TEST_F(DemoNotify, KeepsAnAddress) {
  const Element answer = ask({.device = byMail});
  EXPECT_EQ(answer.textOf("Status"), "1");
  EXPECT_EQ(answer.children.size(), 1u);
  EXPECT_EQ(setup().address, "ada@example.org");
  EXPECT_EQ(setup().friendlyName, "Ada's");
  EXPECT_EQ(setup().lifetime, 0);
}

TEST_F(DemoNotify, SwitchesFoldersOn) {
  const Element answer = ask({.lifetime = "60", .device = byMail, .folders = {"f2", "gone", "f8"}});
  EXPECT_EQ(answer.textOf("Status"), "1");
  EXPECT_EQ(
      linesOf(answer.child("Responses")),
      (Lines{"Folder ServerId=f2 Status=1", "Folder ServerId=gone Status=5", "Folder ServerId=f8 Status=1"}));
  EXPECT_EQ(setup().lifetime, 60);
  EXPECT_EQ(setup().folders, (std::vector<std::string>{"f2", "f8"}));
}

TEST_F(DemoNotify, ANewSetUpReplacesTheOld) {
  ask({.lifetime = "60", .device = byMail, .folders = {"f2", "f8"}});
  ask({.lifetime = "30", .device = byMail, .folders = {"f9"}});
  EXPECT_EQ(setup().lifetime, 30);
  EXPECT_EQ(setup().folders, std::vector<std::string>{"f9"});
  EXPECT_EQ(state.devices.list().size(), 1u);
}

TEST_F(DemoNotify, ALifetimeOfZeroSwitchesOff) {
  ask({.lifetime = "60", .device = byMail, .folders = {"f2"}});
  const Element answer = ask({.lifetime = "0"});
  EXPECT_EQ(answer.textOf("Status"), "1");
  EXPECT_EQ(answer.children.size(), 1u);
  EXPECT_EQ(setup().lifetime, 0);
  EXPECT_TRUE(setup().folders.empty());
  EXPECT_EQ(setup().address, "ada@example.org");
}

TEST_F(DemoNotify, ANumberNeedsAKnownCarrier) {
  Fields number = {{"FriendlyName", "A"}, {"DeviceAddress", "5550100"}};
  for (const char* carrier : {"", "Nobody"}) {
    Fields with = number;
    with.emplace_back("CarrierProfile", carrier);
    for (const char* lifetime : {"", "60"}) {
      const Element answer = ask({.lifetime = lifetime, .device = with, .folders = {"f2"}});
      EXPECT_EQ(answer.textOf("Status"), "3") << carrier;
      EXPECT_EQ(answer.child("ValidCarrierProfiles")->children.size(), 4u);
    }
  }
  EXPECT_FALSE(state.devices.find("d1"));
  number.emplace_back("CarrierProfile", "Überlandfunk");
  EXPECT_EQ(ask({.lifetime = "60", .device = number}).textOf("Status"), "1");
  EXPECT_EQ(setup().carrier, "Überlandfunk");
}

TEST_F(DemoNotify, RefusesBadAddressesAndLifetimes) {
  EXPECT_EQ(ask({.lifetime = "60"}).textOf("Status"), "2");
  EXPECT_EQ(ask({.device = {{"FriendlyName", "A"}}}).textOf("Status"), "2");
  EXPECT_EQ(ask({.device = {{"DeviceAddress", "@" + std::string(256, 'x')}}}).textOf("Status"), "2");
  for (const char* lifetime : {"-1", "soon", "99999999999"})
    EXPECT_EQ(ask({.lifetime = lifetime, .device = byMail}).textOf("Status"), "4") << lifetime;
  EXPECT_FALSE(state.devices.find("d1"));
}

TEST_F(DemoNotify, RefusesWhatIsNoRequest) {
  EXPECT_THROW(runNotify(state, "d1", Element(Page::Sync, "Sync")), BadRequest);
  EXPECT_THROW(runNotify(state, "d1", Element(Page::Notify, "AirNotify")), BadRequest);
  EXPECT_THROW(ask({.lifetime = "60", .device = byMail, .folders = {""}}), BadRequest);
}

}  // namespace
}  // namespace demoserver
