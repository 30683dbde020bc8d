// What the tests of the item decoders stand on.
#ifndef TESTS_UNIT_PARSER_ITEM_RIG_H
#define TESTS_UNIT_PARSER_ITEM_RIG_H

#include <functional>

#include "ParserRig.h"
#include "support/FullItems.h"

namespace airsync_test {

/// One field alone: its element, and what the record then holds.
struct FieldRow {
  const char* tag;
  const char* text;
  const char* name;
  const char* value;
};

/// A parser of one data class.
class ItemRig : public ParserRig {
 protected:
  ItemRig(DATATYPE dataType, const char* className) : className_(className) {
    folder.dataType = dataType;
    store.dataType = dataType;
  }

  /// A Sync response in which the server adds items, each with these elements.
  sml_element* TreeOf(const std::vector<Nodes>& items) const {
    Nodes adds;
    for (const Nodes& elements : items) {
      adds.push_back({"Add", Nodes{{"ServerId", "1"}, {"ApplicationData", elements}}});
    }
    return Tree(AnswerOf({{"SyncKey", "k"}, {"Class", className_}, Commands(adds)}), kAirSyncPage);
  }

  /// The fields of an item with these elements.
  ItemFields Decoded(const Nodes& elements) {
    store.ClearCalls();
    EXPECT_EQ(SyncTree(TreeOf({elements})), 0U);
    if (store.Calls().size() != 2) return {{"calls", std::to_string(store.Calls().size())}};
    const StoreCall& call = store.Calls()[0];
    return call.event ? *call.event : call.mail ? *call.mail : ItemFields{{"no", "copy"}};
  }
  /// One of them; "(null)" where it is absent.
  std::string DecodedField(const Nodes& elements, const std::string& name) {
    const ItemFields fields = Decoded(elements);
    return fields.count(name) == 0 ? "(null)" : fields.at(name);
  }

  /// Looks at each record while it lives.
  template <typename Record>
  void Look(const std::function<void(const Record&)>& look) {
    store.OnCall([look](const StoreCall& call) {
      if (call.record != nullptr) look(*static_cast<const Record*>(call.record));
    });
  }

  /// Runs the response again and again, each time with a later allocation failing, until none does: it ends
  /// with exhaustion, or with the key stored, and leaves nothing behind. How many runs it took.
  std::size_t FailEachAllocation(const std::string& golden) {
    for (std::size_t k = 1;; ++k) {
      store.ClearCalls();
      sml_element* const tree = ReadTree(GoldenDocument(golden));
      FailingMemory::Reset();
      FailingMemory::FailAt(k);
      const SYNC_RESULT result = SyncTree(tree);
      const bool reached = FailingMemory::Allocations() >= k;
      FailingMemory::Reset();
      EXPECT_TRUE(result == 0 || result == 0x8001000dU) << k;
      EXPECT_EQ(store.Calls().size(), result == 0 ? 2U : 0U) << k;
      if (!reached || testing::Test::HasFailure()) return k;
    }
  }

  static Node List(const std::string& tag, const std::string& entryTag, const Lines& entries) {
    Nodes children;
    for (const std::string& entry : entries) children.push_back({entryTag, entry});
    return {tag, children};
  }

 private:
  const char* className_;
};

}  // namespace airsync_test

#endif
