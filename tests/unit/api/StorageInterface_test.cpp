#include <gtest/gtest.h>

#include "api/AirSyncDBInterface.h"
#include "support/SlotTable.h"

namespace {

using namespace AIRSYNC_STACK;

typedef airsync_test::SlotTable<18> EighteenSlots;

TEST(StorageInterface, OperationsHaveTheirFixedPlacesInTheDispatchTable) {
  EighteenSlots slots;
  AirSyncDBInterface* const storage = slots.As<AirSyncDBInterface>();

  storage->StoreSyncKey(0, nullptr, "");
  EXPECT_EQ(EighteenSlots::LastSlot(), 0);
  storage->Reserved1();
  EXPECT_EQ(EighteenSlots::LastSlot(), 1);
  storage->GetFolderList(nullptr, nullptr);
  EXPECT_EQ(EighteenSlots::LastSlot(), 2);
  storage->SetNotifyFolderStatus(0, 0);
  EXPECT_EQ(EighteenSlots::LastSlot(), 3);
  storage->SetItemEstimate(0, 0, 0);
  EXPECT_EQ(EighteenSlots::LastSlot(), 4);
  storage->GetNextChange(0, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(EighteenSlots::LastSlot(), 5);
  storage->Reserved6();
  EXPECT_EQ(EighteenSlots::LastSlot(), 6);
  storage->AddResult(0, nullptr, nullptr, 0);
  EXPECT_EQ(EighteenSlots::LastSlot(), 7);
  storage->DeleteResult(0, nullptr, 0);
  EXPECT_EQ(EighteenSlots::LastSlot(), 8);
  storage->ChangeResult(0, nullptr, 0);
  EXPECT_EQ(EighteenSlots::LastSlot(), 9);
  storage->FetchedItem(0, nullptr, nullptr, 0);
  EXPECT_EQ(EighteenSlots::LastSlot(), 10);
  storage->AddServerItem(0, nullptr, nullptr);
  EXPECT_EQ(EighteenSlots::LastSlot(), 11);
  storage->DeleteServerItem(0, nullptr);
  EXPECT_EQ(EighteenSlots::LastSlot(), 12);
  storage->ChangeServerItem(0, nullptr, nullptr);
  EXPECT_EQ(EighteenSlots::LastSlot(), 13);
  storage->Reserved14();
  EXPECT_EQ(EighteenSlots::LastSlot(), 14);
  storage->Reserved15();
  EXPECT_EQ(EighteenSlots::LastSlot(), 15);
  storage->Reserved16();
  EXPECT_EQ(EighteenSlots::LastSlot(), 16);
  storage->UpdateFolder(nullptr, 0);
  EXPECT_EQ(EighteenSlots::LastSlot(), 17);
}

}  // namespace
