#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Commands = std::vector<Command>;

class ItemMoves : public StoreTest {
 protected:
  void SetUp() override {
    hierarchy(
        HierarchyFetch::changes,
        [&] {
          updateFolder("m1", "Inbox", 2, AS_FOLDER_ADDED);
          updateFolder("m2", "Archive", 12, AS_FOLDER_ADDED);
          updateFolder("c1", "Contacts", 9, AS_FOLDER_ADDED);
          updateFolder("c2", "Friends", 14, AS_FOLDER_ADDED);
        },
        "h1");
    from_ = store().findFolder("m1").number;
    to_ = store().findFolder("m2").number;
    exchange(from_, [](Library& library) {
      library.add("m1:1", fullMail());
      library.add("m1:2", mail("Coffee"));
    });
    number_ = item(from_, "m1:1");
  }
  std::string refusal(ItemNumber number, FolderNumber to) {
    try {
      store().checkMovable(number, to);
    } catch (const Error& error) {
      EXPECT_FALSE(error.advice().empty());
      return error.story().cause;
    }
    return "";
  }

  FolderNumber from_ = 0;
  FolderNumber to_ = 0;
  ItemNumber number_ = 0;
};

TEST_F(ItemMoves, AreThereAtOnceUnderTheNewIdentifier) {
  EXPECT_EQ(refusal(number_, to_), "");
  store().moveItem(number_, to_, "m2:9");
  reopen();
  EXPECT_EQ(item(to_, "m2:9"), number_);
  EXPECT_EQ(store().item(number_).folder, to_);
  EXPECT_EQ(mailOf(number_), fullMail());
  EXPECT_EQ(store().folder(from_).items, 1U);
  EXPECT_THROW(store().findItem(from_, "m1:1"), Error);
}

TEST_F(ItemMoves, AreTheSameItemsInTheNextResponsesOfBothFolders) {
  store().moveItem(number_, to_, "m2:9");
  EXPECT_EQ(exchange(from_, [](Library& library) { library.remove("m1:1"); }).deleted, 0U);
  EXPECT_EQ(exchange(to_, [](Library& library) { library.add("m2:9", mail("Tea")); }).added, 0U);
  EXPECT_EQ(store().folder(to_).items, 1U);
  EXPECT_EQ(mailOf(number_), mail("Tea"));
}

TEST_F(ItemMoves, ThatASynchronisationBroughtAlreadyAreNotThereTwice) {
  exchange(to_, [](Library& library) { library.add("m2:9", mail("Tea")); });
  const ItemNumber brought = item(to_, "m2:9");
  store().moveItem(number_, to_, "m2:9");
  EXPECT_EQ(item(to_, "m2:9"), brought);
  EXPECT_THROW(store().item(number_), Error);
}

TEST_F(ItemMoves, ThatASynchronisationBroughtAlreadyKeepAChangeThatWasMadeMeanwhile) {
  exchange(to_, [](Library& library) { library.add("m2:9", fullMail()); });
  store().markMail(number_, false);
  store().moveItem(number_, to_, "m2:9");
  EXPECT_EQ(store().folder(to_).items, 1U);
  EXPECT_EQ(item(to_, "m2:9"), number_);
  EXPECT_EQ(Library(store(), to_).request(), Commands{changeOf("m2:9", "unread")});
}

TEST_F(ItemMoves, ThatASynchronisationBroughtAlreadyKeepTheChangeOfTheOneThatItBrought) {
  exchange(to_, [](Library& library) { library.add("m2:9", fullMail()); });
  const ItemNumber brought = item(to_, "m2:9");
  store().markMail(number_, false);
  store().deleteItem(brought);
  store().moveItem(number_, to_, "m2:9");
  EXPECT_THROW(store().item(number_), Error);
  EXPECT_EQ(Library(store(), to_).request(), Commands{deleteOf("m2:9")});
}

TEST_F(ItemMoves, ThatAreToldTwiceAreThereOnce) {
  store().moveItem(number_, to_, "m2:9");
  store().moveItem(number_, to_, "m2:9");
  EXPECT_EQ(item(to_, "m2:9"), number_);
  EXPECT_EQ(mailOf(number_), fullMail());
}

TEST_F(ItemMoves, WithoutAnIdentifierAreGoneUntilTheFolderIsSynchronised) {
  store().moveItem(number_, to_, std::nullopt);
  EXPECT_THROW(store().item(number_), Error);
  exchange(to_, [](Library& library) { library.add("m2:9", fullMail()); });
  EXPECT_EQ(mailOf(item(to_, "m2:9")), fullMail());
}

TEST_F(ItemMoves, SurviveAFullDownloadThatIsUnderWay) {
  exchange(to_, [](Library&) {});
  store().resetFolder(to_);
  exchange(to_, [](Library&) {});
  store().moveItem(number_, to_, "m2:9");
  exchange(to_, [](Library&) {});
  EXPECT_EQ(item(to_, "m2:9"), number_);
}

TEST_F(ItemMoves, AreRefusedBeforehand) {
  const FolderNumber contacts = store().findFolder("c1").number;
  EXPECT_EQ(refusal(99, to_), "there is no such item");
  EXPECT_EQ(refusal(number_, from_), "it is in that folder already");
  EXPECT_EQ(refusal(number_, contacts), "that folder is for items of another class");
  EXPECT_EQ(refusal(number_, 99), "it is not on the server any more");
  store().markMail(number_, true);
  store().markMail(number_, false);
  EXPECT_EQ(refusal(number_, to_), "it has a local change that the server does not know");
  const ItemNumber unsent = store().addItem(contacts, person("Ada"));
  EXPECT_EQ(refusal(unsent, store().findFolder("c2").number),
            "it has a local change that the server does not know");
  store().deleteItem(item(from_, "m1:2"));
  EXPECT_EQ(refusal(2, to_), "there is no such item");
}

TEST_F(ItemMoves, TakeAChangeAlongThatWasMadeMeanwhile) {
  store().markMail(number_, false);
  {
    Library library(store(), from_);
    library.request();
    library.end(AS_RESULT_TRANSPORT_FAILED);
  }
  store().moveItem(number_, to_, "m2:9");
  exchange(to_, [](Library&) {});
  Library library(store(), to_);
  EXPECT_EQ(library.request(), Commands{changeOf("m2:9", "unread")});
}

TEST_F(ItemMoves, WithoutAnIdentifierKeepAnEditThatWasMadeMeanwhileAsAFailure) {
  const FolderNumber contacts = store().findFolder("c1").number;
  const FolderNumber friends = store().findFolder("c2").number;
  exchange(contacts, [](Library& library) { library.add("c1:1", person("Ada")); });
  const ItemNumber number = item(contacts, "c1:1");
  store().changeItem(number, person("Grace"));
  store().moveItem(number, friends, std::nullopt);
  const auto failures = store().failures(friends);
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_EQ(failures[0].item, number);
  EXPECT_EQ(failures[0].change.kind, ChangeKind::add);
  EXPECT_EQ(contactOf(number), person("Grace"));
  store().retry(number);
  EXPECT_EQ(Library(store(), friends).request(), Commands{addOf(number, "Grace")});
}

TEST_F(ItemMoves, WithoutAnIdentifierForgetWhatTheServerHadOfAnEditedItem) {
  const FolderNumber contacts = store().findFolder("c1").number;
  const FolderNumber friends = store().findFolder("c2").number;
  exchange(contacts, [](Library& library) { library.add("c1:1", person("Ada")); });
  const ItemNumber number = item(contacts, "c1:1");
  store().changeItem(number, person("Grace"));
  store().moveItem(number, friends, std::nullopt);
  exchange(friends, [](Library&) {});
  store().retry(number);
  {
    Library library(store(), friends);
    library.request();
    store().changeItem(number, person("Joan"));
    library.addResult(number, "c2:1");
    library.key("k5");
    library.end();
  }
  store().discard(number);
  EXPECT_EQ(contactOf(number), person("Grace"));  // as it was sent, and not what the server had before
}

}  // namespace
}  // namespace airsync::test
