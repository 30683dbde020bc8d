// A second process looks at the store and changes it while the first synchronises.
#include <functional>
#include <sqlite3.h>
#include <string_view>
#include <utility>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Names = std::vector<std::string>;

class TwoConnections : public StoreTest {
 protected:
  static Names namesIn(Store& other, FolderNumber folder) {
    Names list;
    other.listItems(folder, [&](const ItemSummary& line) {
      list.push_back(std::get<ContactSummary>(line.details).name);
      return true;
    });
    return list;
  }
};

TEST_F(TwoConnections, SeeAResponseOnlyWhenItsKeyIsStored) {
  const FolderNumber folder = contactsWith({"s1"});
  Store other(file());
  Library library(store(), folder);
  library.add("s2", person("Ada"));
  library.change("s1", person("Grace"));
  EXPECT_EQ(namesIn(other, folder), Names{"s1 Lovelace"});
  EXPECT_EQ(other.folder(folder).syncKey, "k1");
  library.key("k2");
  EXPECT_EQ(namesIn(other, folder), (Names{"Grace Lovelace", "Ada Lovelace"}));
  EXPECT_EQ(other.folder(folder).syncKey, "k2");
}

TEST_F(TwoConnections, LetAPersonAddWhileTheLibraryWaitsForTheServer) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  Store other(file());
  Library library(store(), folder);
  ASSERT_EQ(library.request().size(), 1U);
  const ItemNumber added = other.addItem(folder, person("Grace"));
  library.key("k2");
  EXPECT_EQ(library.request(), std::vector<Command>{addOf(added, "Grace")});
  library.addResult(added, "s2");
  library.key("k3");
  library.end();
  EXPECT_EQ(*other.item(added).serverId, "s2");
}

TEST_F(TwoConnections, KeepAChangeMadeWhileItsOlderVersionIsUnderWay) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, person("Ada"));
  Store other(file());
  Library library(store(), folder);
  library.request();
  other.changeItem(number, person("Grace"));
  library.changeResult("s1");
  library.key("k2");
  library.end();
  EXPECT_EQ(namesIn(other, folder), Names{"Grace Lovelace"});
  Library next(store(), folder);
  EXPECT_EQ(next.request(), std::vector<Command>{changeOf("s1", "Grace")});
}

TEST_F(TwoConnections, SettleNothingThatWasMadeAfterAChangeWasGivenUp) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, person("Ada"));
  Store other(file());
  Library library(store(), folder);
  library.request(0);  // handed out, in no request yet
  library.end(AS_RESULT_TRANSPORT_FAILED, Reached::no);
  other.discard(number);
  other.changeItem(number, person("Grace"));
  Library again(store(), folder);
  EXPECT_EQ(again.request(), std::vector<Command>{changeOf("s1", "Grace")});
}

TEST_F(TwoConnections, ReadWhileTheOtherWrites) {
  const FolderNumber folder = contactsWith({"s1"});
  Store other(file());
  Library library(store(), folder);
  library.add("s2", person("Ada"));
  EXPECT_EQ(other.folders().size(), 1U);
  EXPECT_EQ(other.findItem(folder, "s1"), 1);
  EXPECT_TRUE(other.failures().empty());
  Store third(file());
  EXPECT_EQ(third.hierarchyKey(), "h1");
}

// Runs once, before the next statement of a connection opened since arm() that has `part` in its text.
struct Between {
  static inline std::string part;
  static inline std::function<void()> act;

  static int trace(unsigned /*event*/, void* /*context*/, void* /*statement*/, void* text) {
    if (!act || std::string_view(static_cast<const char*>(text)).find(part) == std::string_view::npos)
      return 0;
    std::exchange(act, nullptr)();
    return 0;
  }
  static int install(sqlite3* connection, char** /*error*/, const sqlite3_api_routines* /*api*/) {
    return sqlite3_trace_v2(connection, SQLITE_TRACE_STMT, trace, nullptr);
  }
  static void arm() { sqlite3_auto_extension(reinterpret_cast<void (*)()>(install)); }
  static void disarm() {
    sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(install));
    act = nullptr;
  }
};

TEST_F(TwoConnections, ReadAnItemAsItWasAtOneMoment) {
  const FolderNumber folder = calendar();
  exchange(folder, [](Library& library) { library.add("s1", fullEvent()); });
  const ItemNumber number = item(folder, "s1");
  Between::arm();
  Store other(file());
  Between::disarm();
  Between::part = "FROM event_exception";
  bool written = false;
  Between::act = [&] {
    store().changeItem(number, event("other"));
    written = true;
  };
  EXPECT_EQ(std::get<Event>(other.item(number).value), fullEvent());
  EXPECT_TRUE(written);
  EXPECT_EQ(std::get<Event>(other.item(number).value), event("other"));
}

}  // namespace
}  // namespace airsync::test
