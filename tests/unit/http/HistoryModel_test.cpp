// The sliding history against a model that moves its 69 bytes at each read.
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "api/AirSync.h"
#include "http/Communications.h"
#include "support/Account.h"
#include "support/ScriptedTransport.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::ScriptedTransport;
using airsync_test::TestAccount;

// 69 bytes, oldest first, and how many of the newest are to be handed out again.
class Model {
 public:
  explicit Model(const std::string& body) : body_(body) {}

  std::string Read(std::size_t count) {
    std::string got = history_.substr(kHistory - buffered_, std::min(count, buffered_));
    buffered_ -= got.size();
    asked_ = count - got.size();
    const std::string fresh = body_.substr(at_, asked_);
    at_ += asked_;
    history_ = (history_ + fresh).substr(fresh.size());
    return got + fresh;
  }

  void StepBack(std::size_t count) { buffered_ += count; }

  std::size_t Buffered() const { return buffered_; }
  std::size_t Asked() const { return asked_; }  // of the transport, by the last read
  std::size_t Left() const { return body_.size() - at_; }
  /// Steps back within what was read of this body.
  std::size_t FarthestStepBack() const { return std::min(kHistory, at_) - buffered_; }

 private:
  static constexpr std::size_t kHistory = 69;
  const std::string& body_;
  std::size_t at_ = 0;
  std::size_t asked_ = 0;
  std::string history_ = std::string(kHistory, '\0');
  std::size_t buffered_ = 0;
};

class HistoryModel : public testing::TestWithParam<std::size_t> {};

// The parameter is the size of the largest read.
TEST_P(HistoryModel, AgreesAfterEveryOperation) {
  std::mt19937 random(20260101U + static_cast<unsigned>(GetParam()));
  ScriptedTransport transport;
  Communications comms(TestAccount(), &transport, nullptr);
  for (int response = 0; response < 3; ++response) {
    std::string body(20000, '\0');
    for (char& byte : body) byte = static_cast<char>(random());
    transport.Answer(body);
    comms.ReadHTTPHeader();
    Model model(body);
    std::vector<UINT8> destination;
    while (model.Left() > GetParam()) {
      // Rarely in the middle of a repetition, so that reads of one byte get on.
      if (random() % (model.Buffered() == 0 ? 8 : 200) == 0) {
        const std::size_t back = random() % (model.FarthestStepBack() + 1);
        comms.Read(nullptr, -static_cast<int>(back));
        model.StepBack(back);
      } else {
        const std::size_t count = 1 + random() % GetParam();
        destination.assign(count, 0);
        transport.ClearCalls();
        comms.Read(destination.data(), static_cast<int>(count));
        const std::string expected = model.Read(count);
        ASSERT_EQ(std::memcmp(destination.data(), expected.data(), count), 0);
        ASSERT_EQ(transport.Calls().size(), model.Asked() == 0 ? 0U : 1U);
        if (model.Asked() != 0) {
          ASSERT_EQ(transport.Calls()[0].line, "Read " + std::to_string(model.Asked()) + " document");
        }
      }
      ASSERT_EQ(comms.BufferedBytesAvaliable(), model.Buffered());
    }
  }
  AirSync::destroyInstance();
}

INSTANTIATE_TEST_SUITE_P(UpTo, HistoryModel, testing::Values(1U, 2U, 5U, 68U, 69U, 70U, 138U, 500U, 5000U));

}  // namespace
