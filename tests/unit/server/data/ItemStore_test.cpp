#include "data/ItemStore.h"

#include <gtest/gtest.h>

#include "data/State.h"

namespace demoserver {
namespace {

struct DemoItems : ::testing::Test {
  State state{":memory:"};
  std::string idOf(const std::string& folder, const std::string& field, const std::string& text) {
    const auto found = state.items.findByText(folder, field, text);
    return found ? found->id : "none";
  }
};

TEST_F(DemoItems, AreFoundByATextThatTheyHave) {
  const std::string gone = state.items.add("f8", {{"UID", "a"}}).id;
  state.items.add("f8", {{"Subject", "a"}});
  state.items.add("c1", {{"UID", "a"}});
  state.items.remove(gone);
  EXPECT_EQ(idOf("f8", "UID", "a"), "none");
  const std::string first = state.items.add("f8", {{"UID", "a"}, {"Subject", "b"}}).id;
  state.items.add("f8", {{"UID", "a"}});
  EXPECT_EQ(idOf("f8", "UID", "a"), first);
  EXPECT_EQ(state.items.findByText("f8", "UID", "a")->record["Subject"], "b");
  EXPECT_EQ(idOf("f8", "UID", "A"), "none");
  EXPECT_EQ(idOf("f8", "UID", ""), "none");
}

TEST_F(DemoItems, AreFoundByTextsOfAnyCharacters) {
  const std::string text = "\"1' %_\\\u00fc\n";
  const std::string id = state.items.add("f8", {{"UID", text}}).id;
  EXPECT_EQ(idOf("f8", "UID", text), id);
}

}  // namespace
}  // namespace demoserver
