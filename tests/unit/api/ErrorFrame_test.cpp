#include "api/ErrorFrame.h"

#include <gtest/gtest.h>

#include "api/AirSync.h"
#include "support/ApiSession.h"
#include "support/CatchAbort.h"
#include "support/Memory.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;

class ErrorFrame : public testing::Test {
 protected:
  ErrorFrame() { FailingMemory::Reset(); }
  ~ErrorFrame() override { AirSync::destroyInstance(); }
};

typedef ErrorFrame ErrorFrameDeathTest;

TEST_F(ErrorFrame, ReturnsWhatItsBodyReturns) {
  EXPECT_EQ(RunFramed([]() -> SYNC_RESULT { return 0; }), 0U);
  EXPECT_EQ(RunFramed([]() -> SYNC_RESULT { return 0x80000000; }), 0x80000000U);
}

TEST_F(ErrorFrame, ReturnsTheCodeOfAnAbort) {
  for (const SYNC_RESULT code : {0x80000000U, 0x8001000bU, 0x800200c8U, 0xffffffffU, 0x00000001U}) {
    volatile bool wentOn = false;
    EXPECT_EQ(CatchAbort([&] {
                AirSync::getInstance()->AbortSync(code);
                wentOn = true;
              }),
              code);
    EXPECT_FALSE(wentOn);
  }
}

TEST_F(ErrorFrame, IsArmedWhileItsBodyRunsOnly) {
  EXPECT_FALSE(FrameArmed());
  EXPECT_EQ(RunFramed([]() -> SYNC_RESULT { return FrameArmed() ? 1 : 2; }), 1U);
  EXPECT_FALSE(FrameArmed());
  CatchAbort([] { AirSync::getInstance()->AbortSync(0x8001000b); });
  EXPECT_FALSE(FrameArmed());
}

TEST_F(ErrorFrame, AnInnerFrameGivesTheOuterOneBack) {
  volatile SYNC_RESULT inner = 0;
  volatile std::size_t live = 0;
  EXPECT_EQ(CatchAbort([&] {
              AdapterMalloc(10);
              AirSync::getInstance()->CancelSync();
              inner = CatchAbort([] {
                AdapterMalloc(20);
                AirSync::getInstance()->AbortSync(0x80000001);
              });
              live = FailingMemory::LiveBlocks();
              EXPECT_TRUE(AirSync::getInstance()->CancelRequested());
              AirSync::getInstance()->AbortSync(0x8001000b);
            }),
            0x8001000bU);
  EXPECT_EQ(inner, 0x80000001U);
  EXPECT_EQ(live, 2U) << "the outer block and its node";
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
  EXPECT_FALSE(AirSync::getInstance()->CancelRequested());
  EXPECT_FALSE(FrameArmed());
}

TEST_F(ErrorFrame, ThreeFramesComeBackInTheirOrder) {
  volatile int reached = 0;
  EXPECT_EQ(CatchAbort([&] {
              CatchAbort([&] {
                CatchAbort([] { AdapterMalloc(1); });
                reached = reached + 1;
                AirSync::getInstance()->AbortSync(0x80000002);
              });
              reached = reached + 1;
              AirSync::getInstance()->AbortSync(0x80000003);
            }),
            0x80000003U);
  EXPECT_EQ(reached, 2);
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST_F(ErrorFrame, AnAbortReleasesTrackedMemoryAndClearsTheCancelFlag) {
  AirSync::getInstance()->CancelSync();
  CatchAbort([] {
    AdapterMalloc(10);
    AdapterMalloc(20);
    AirSync::getInstance()->AbortSync(0x8001000b);
  });
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
  EXPECT_FALSE(AirSync::getInstance()->CancelRequested());
}

TEST_F(ErrorFrame, ABodyThatReturnsKeepsTrackedMemoryAndTheCancelFlag) {
  AirSync::getInstance()->CancelSync();
  CatchAbort([] { AdapterMalloc(10); });
  EXPECT_EQ(FailingMemory::LiveBlocks(), 2U);  // the block and its node
  EXPECT_TRUE(AirSync::getInstance()->CancelRequested());
  AdapterFreeAll();
}

TEST_F(ErrorFrame, RunningOutOfMemoryIsAnAbort) {
  for (std::size_t k = 1; k <= 2; ++k) {
    FailingMemory::FailAt(k);
    EXPECT_EQ(CatchAbort([] { AdapterMalloc(10); }), 0x8001000dU);
    EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
  }
  FailingMemory::Reset();
}

TEST_F(ErrorFrameDeathTest, AnAbortOutsideOfAnOperationStopsTheProcessWithAMessage) {
  EXPECT_DEATH(AirSync::getInstance()->AbortSync(0x8001000b),
               "AirSync::AbortSync\\(0x8001000b\\) outside of an operation");
}

TEST_F(ErrorFrameDeathTest, AnAbortAfterAnOperationHasReturnedStopsTheProcess) {
  ApiSession session;
  session.transport.Answer(HexAndText(ApiCommands()[0].answer));
  EXPECT_EQ(ApiCommands()[0].run(session), 0U);
  EXPECT_DEATH(session.airSync->AbortSync(0x80000001), "AirSync::AbortSync\\(0x80000001\\) outside");
}

TEST_F(ErrorFrameDeathTest, AnAbortAfterAnOperationHasFailedStopsTheProcess) {
  ApiSession session;
  session.transport.FailAt(1);
  EXPECT_EQ(ApiCommands()[0].run(session), 0x8001000cU);
  EXPECT_DEATH(session.airSync->AbortSync(0x80000001), "AirSync::AbortSync\\(0x80000001\\) outside");
}

TEST_F(ErrorFrameDeathTest, RunningOutOfMemoryOutsideOfAnOperationStopsTheProcess) {
  FailingMemory::FailAt(1);
  EXPECT_DEATH(AdapterMalloc(1), "AirSync::AbortSync\\(0x8001000d\\) outside of an operation");
  FailingMemory::Reset();
}

}  // namespace
