// The process ends at some moment, for every moment there is; the next run finds the state of the last key,
// and comes to the same end as a run that nothing disturbed.
#include <sys/wait.h>
#include <unistd.h>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Names = std::vector<std::string>;

class Durability : public StoreTest {
 protected:
  // Runs the first `count` steps in a process of their own, which then ends without any clearing up.
  void runAndDie(const std::vector<std::function<void(Library&)>>& steps, std::size_t count,
                 FolderNumber folder) {
    close();
    const pid_t child = ::fork();
    if (child == 0) {
      Store other(file());
      Library library(other, folder);
      for (std::size_t index = 0; index < count; ++index) steps[index](library);
      ::_exit(0);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    reopen();
  }

  // What a person sees, as one text.
  std::string picture(FolderNumber folder) {
    std::string text = store().folder(folder).syncKey + ":";
    store().listItems(folder, [&](const ItemSummary& line) {
      text += " " + line.serverId.value_or("-") + "=" + std::get<ContactSummary>(line.details).name +
              (line.pending ? "*" : "");
      return true;
    });
    return text;
  }
};

TEST_F(Durability, KillAtAnyMomentLeavesTheStateOfTheLastKey) {
  constexpr const char* before = "k1: s1=Ada Lovelace* s2=s2 Lovelace s3=s3 Lovelace";
  constexpr const char* between = "k2: s1=Ada Lovelace s2=s2 Lovelace s3=s3 Lovelace s4=Joan Lovelace";
  constexpr const char* after =
      "k3: s1=Ada Lovelace s2=s2 Lovelace s3=Mary Lovelace s4=Joan Lovelace s6=Emmy Lovelace";
  // What the server deleted goes when it has said everything.
  constexpr const char* ended = "k3: s1=Ada Lovelace s3=Mary Lovelace s4=Joan Lovelace s6=Emmy Lovelace";
  const std::vector<std::function<void(Library&)>> steps = {
      [](Library& library) { library.request(); },
      [](Library& library) { library.add("s4", person("Joan")); },
      [](Library& library) { library.remove("s2"); },
      [](Library& library) { library.changeResult("s1"); },
      [](Library& library) { library.key("k2"); },
      [](Library& library) { library.request(); },
      [](Library& library) { library.add("s6", person("Emmy")); },
      [](Library& library) { library.change("s3", person("Mary")); },
      [](Library& library) { library.key("k3"); },
      [](Library& library) { library.end(); },
  };
  constexpr std::size_t kFirstKey = 5;
  constexpr std::size_t kSecondKey = 9;
  for (std::size_t count = 0; count <= steps.size(); ++count) {
    SCOPED_TRACE(count);
    close();
    std::filesystem::remove(file());
    reopen();
    const FolderNumber folder = contactsWith({"s1", "s2", "s3"});
    store().changeItem(1, person("Ada"));

    runAndDie(steps, count, folder);
    const std::size_t done = count >= kSecondKey ? kSecondKey : count >= kFirstKey ? kFirstKey : 0;
    const char* expected = done == kSecondKey ? after : done == kFirstKey ? between : before;
    EXPECT_EQ(picture(folder), count == steps.size() ? ended : expected);

    if (store().nextStep(folder, 0, false) == SyncStep::receive) receive(folder);
    Library library(store(), folder);
    for (std::size_t index = done; index < kSecondKey; ++index) steps[index](library);
    library.end();
    EXPECT_EQ(picture(folder), ended);
  }
}

TEST_F(Durability, KillBeforeTheHierarchyIsCommittedLeavesTheOldOne) {
  contacts();
  close();
  for (const bool commit : {false, true}) {
    const pid_t child = ::fork();
    if (child == 0) {
      Store other(file());
      other.beginHierarchy(HierarchyFetch::changes);
      BASE_FOLDER folder = {"Friends", 14, {"c2"}, {"0"}};
      other.UpdateFolder(&folder, AS_FOLDER_ADDED);
      if (commit) other.commitHierarchy({"h2"});
      ::_exit(0);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    reopen();
    EXPECT_EQ(store().folders().size(), commit ? 2U : 1U);
    EXPECT_EQ(store().hierarchyKey(), commit ? "h2" : "h1");
    close();
  }
  reopen();
}

TEST_F(Durability, KillDuringAResetStillFindsWhatIsGone) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  store().resetFolder(folder);
  const std::vector<std::function<void(Library&)>> steps = {
      [](Library& library) { library.key("n1"); },
      [](Library& library) { library.add("s1", person("s1")); },
      [](Library& library) { library.key("n2"); },
  };
  runAndDie(steps, steps.size(), folder);
  EXPECT_EQ(names(folder), (Names{"s1", "s2"}));
  Library library(store(), folder);
  library.key("n3");
  library.end();
  EXPECT_EQ(names(folder), Names{"s1"});
}

}  // namespace
}  // namespace airsync::test
