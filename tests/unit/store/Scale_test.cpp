// Work is counted in steps of SQLite's machine, which show any scan that should have been a look-up.
#include <cstdint>
#include <sqlite3.h>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

constexpr int kStepsPerCall = 100;
std::uint64_t calls = 0;

int count(void* /*unused*/) {
  ++calls;
  return 0;
}

int installCounter(sqlite3* database, const char** /*error*/, const sqlite3_api_routines* /*api*/) {
  sqlite3_progress_handler(database, kStepsPerCall, count, nullptr);
  return SQLITE_OK;
}

class Scale : public testing::Test {
 protected:
  Scale() { sqlite3_auto_extension(entryPoint()); }
  ~Scale() override { sqlite3_cancel_auto_extension(entryPoint()); }

  using EntryPoint = void (*)();
  static EntryPoint entryPoint() { return reinterpret_cast<EntryPoint>(installCounter); }

  // The machine's steps, in hundreds, that `work` takes.
  template <typename Work>
  static std::uint64_t steps(Work work) {
    const std::uint64_t before = calls;
    work();
    return calls - before;
  }

  static FolderNumber makeFolder(Store& store) {
    store.beginHierarchy(HierarchyFetch::changes);
    BASE_FOLDER folder = {"Contacts", 9, {"c1"}, {"0"}};
    store.UpdateFolder(&folder, AS_FOLDER_ADDED);
    store.commitHierarchy({"h1"});
    return store.findFolder("c1").number;
  }

  // Fills a folder from the server, ten items to a response.
  static void fill(Store& store, FolderNumber folder, int items, const char* name) {
    Library library(store, folder);
    for (int number = 0; number < items; ++number) {
      library.add("s" + std::to_string(number), person(name));
      if (number % 10 == 9) library.key(("k" + std::to_string(number)).c_str());
    }
    library.end();
  }

  // Ten times the items may take ten times the steps, and a little more for deeper trees.
  static void expectLinear(std::uint64_t small, std::uint64_t large) {
    EXPECT_GT(small, 0U);
    EXPECT_LT(large, 12 * small);
  }
};

struct Measured {
  std::uint64_t download, update, change, upload, reset;
};

TEST_F(Scale, WorkGrowsInProportionToTheItems) {
  const auto measure = [&](int items) {
    const Directory directory;
    Store store(directory.path() / "a.db");
    const FolderNumber folder = makeFolder(store);
    Measured measured = {};
    measured.download = steps([&] { fill(store, folder, items, "Ada"); });
    measured.update = steps([&] { fill(store, folder, items, "Grace"); });
    measured.change = steps([&] {
      for (int number = 1; number <= items; ++number) store.changeItem(number, person("Joan"));
    });
    measured.upload = steps([&] {
      Library library(store, folder);
      int key = 0;
      while (!library.request(50).empty()) library.key(("u" + std::to_string(++key)).c_str());
      EXPECT_EQ(library.end().sent, static_cast<std::size_t>(items));
    });
    measured.reset = steps([&] {
      store.resetFolder(folder);
      Library handshake(store, folder);
      handshake.key("n1");
      handshake.end();
      fill(store, folder, items / 2, "Mary");
      EXPECT_EQ(store.folder(folder).items, static_cast<std::size_t>(items / 2));
    });
    return measured;
  };
  const Measured small = measure(100);
  const Measured large = measure(1000);
  expectLinear(small.download, large.download);
  expectLinear(small.update, large.update);
  expectLinear(small.change, large.change);
  expectLinear(small.upload, large.upload);
  expectLinear(small.reset, large.reset);
}

TEST_F(Scale, TenThousandLocalChangesGoOut) {
  const Directory directory;
  const std::filesystem::path file = directory.path() / "a.db";
  Store store(file);
  const FolderNumber folder = makeFolder(store);
  {
    // Put in place at once: each of ten thousand calls would wait for the disk.
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database,
                           "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10000) "
                           "INSERT INTO item(folder_id, server_id, generation) SELECT 1, 's' || i, 0 FROM n;"
                           "INSERT INTO contact(item_id, version, FirstName) SELECT id, 0, 'Ada' FROM item;"
                           "INSERT INTO pending(item_id, folder_id, kind) SELECT id, 1, 'delete' FROM item;"
                           "UPDATE folder SET sync_key = 'k1'",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(database);
  }
  ASSERT_EQ(store.folder(folder).pending, 10'000U);
  Library library(store, folder);
  int exchanges = 0;
  std::size_t sent = 0;
  for (;;) {
    const std::size_t commands = library.request(400).size();
    if (commands == 0) break;
    sent += commands;
    library.key(("u" + std::to_string(++exchanges)).c_str());
  }
  EXPECT_EQ(sent, 10'000U);
  EXPECT_EQ(exchanges, 25);
  EXPECT_EQ(library.end().sent, 10'000U);
  EXPECT_EQ(store.folder(folder).items, 0U);
}

TEST_F(Scale, WorkWithMailsGrowsInProportionToThem) {
  const auto measure = [&](int mails) {
    const Directory directory;
    Store store(directory.path() / "a.db");
    store.beginHierarchy(HierarchyFetch::changes);
    BASE_FOLDER inbox = {"Inbox", 2, {"m1"}, {"0"}};
    store.UpdateFolder(&inbox, AS_FOLDER_ADDED);
    store.commitHierarchy({"h1"});
    const FolderNumber folder = store.findFolder("m1").number;
    Mail sample = mail("Tea");
    sample.attachments.resize(2);
    return steps([&] {
      Library library(store, folder);
      for (int number = 0; number < mails; ++number) library.add("s" + std::to_string(number), sample);
      library.key("k1");
      for (int number = 0; number < mails; ++number) library.change("s" + std::to_string(number), Mail());
      library.key("k2");
      library.end();
      int lines = 0;
      store.listItems(folder, [&](const ItemSummary&) { return ++lines > 0; });
      EXPECT_EQ(lines, mails);
    });
  };
  expectLinear(measure(1000), measure(10'000));
}

}  // namespace
}  // namespace airsync::test
