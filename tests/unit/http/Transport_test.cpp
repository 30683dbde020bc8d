#include "http/Transport.h"

#include <gtest/gtest.h>

#include "support/SlotTable.h"

namespace {

using namespace AIRSYNC_STACK;

typedef airsync_test::SlotTable<10> TenSlots;

TEST(Transport, OperationsHaveTheirFixedPlacesInTheDispatchTable) {
  TenSlots slots;
  AirSyncTransportInterface* const transport = slots.As<AirSyncTransportInterface>();
  UINT16 status = 0;
  UINT8* destination = nullptr;
  UINT32 length = 0;
  INT32 count = 0;

  transport->Open(nullptr);
  EXPECT_EQ(TenSlots::LastSlot(), 0);
  transport->SendHeader("", 1, 0);
  EXPECT_EQ(TenSlots::LastSlot(), 1);
  transport->EndRequest();
  EXPECT_EQ(TenSlots::LastSlot(), 2);
  transport->Write(nullptr, 0, 0);
  EXPECT_EQ(TenSlots::LastSlot(), 3);
  transport->ReadResponseHead(&status, &destination, &length, false, nullptr, 0, nullptr, 0);
  EXPECT_EQ(TenSlots::LastSlot(), 4);
  transport->Read(nullptr, &count, 0);
  EXPECT_EQ(TenSlots::LastSlot(), 5);
  transport->Close();
  EXPECT_EQ(TenSlots::LastSlot(), 6);
  transport->Reserved7();
  EXPECT_EQ(TenSlots::LastSlot(), 7);
  transport->Reserved8();
  EXPECT_EQ(TenSlots::LastSlot(), 8);
  transport->Cancel();
  EXPECT_EQ(TenSlots::LastSlot(), 9);
}

}  // namespace
