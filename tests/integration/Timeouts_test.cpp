// How long airsync waits is the configuration's to say.
#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <thread>

#include "integration/Fixture.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::integration {
namespace {

using airsync::testing::Peer;
using airsync::testing::ScriptedServer;

class Timeouts : public AirsyncTest {};

// The server takes the connection and says nothing. By default the run would go on for half a minute.
TEST_F(Timeouts, ConnectTimeoutEndsAHandshakeThatNobodyAnswers) {
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }});
  configure("https://127.0.0.1:" + std::to_string(server.port()) + "/service", "connect_timeout = 1\n");
  const auto process = start({"sync"});
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (process->running() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_FALSE(process->running());
  process->signal(SIGTERM);
  EXPECT_EQ(process->wait(), 4);
  EXPECT_THAT(process->errors(), ::testing::HasSubstr("The TLS handshake with 127.0.0.1 port " +
                                                      std::to_string(server.port()) + " took too long"));
}

}  // namespace
}  // namespace airsync::integration
