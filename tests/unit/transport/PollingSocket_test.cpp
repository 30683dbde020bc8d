#include "transport/PollingSocket.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/write.hpp>
#include <gtest/gtest.h>
#include <string>

namespace airsync {
namespace {

namespace asio = boost::asio;
using tcp = asio::ip::tcp;
using std::chrono::hours;
using std::chrono::milliseconds;

class PollingSocketTest : public ::testing::Test {
 protected:
  PollingSocketTest() : server(context), socket(connected(), cancel) {}

  tcp::socket connected() {
    tcp::acceptor acceptor(context, {asio::ip::address_v4::loopback(), 0});
    tcp::socket client(context);
    client.connect(acceptor.local_endpoint());
    client.non_blocking(true);
    acceptor.accept(server);
    return client;
  }

  // Makes `count` bytes arrive and reads them.
  void transfer(std::size_t count) {
    const std::string bytes(count, 'x');
    asio::write(server, asio::buffer(bytes));
    std::string read(count, '\0');
    for (std::size_t got = 0; got < count;) {
      boost::system::error_code error;
      got += socket.read_some(asio::buffer(&read[got], count - got), error);
      ASSERT_FALSE(error) << error.message();
    }
  }

  WaitEnd endOfAReadWithoutData() {
    char byte = 0;
    boost::system::error_code error;
    EXPECT_EQ(socket.read_some(asio::buffer(&byte, 1), error), 0U);
    EXPECT_EQ(error, asio::error::operation_aborted);
    return socket.waitEnd();
  }

  asio::io_context context;
  CancelSignal cancel;
  tcp::socket server;
  PollingSocket socket;
};

TEST_F(PollingSocketTest, EndsAtWhicheverLimitComesFirst) {
  socket.setPatience({Clock::now() + hours(1), milliseconds(1)});
  EXPECT_EQ(endOfAReadWithoutData(), WaitEnd::kIdle);
  socket.setPatience({Clock::now() + milliseconds(1), hours(1)});
  EXPECT_EQ(endOfAReadWithoutData(), WaitEnd::kTotal);
}

TEST_F(PollingSocketTest, TakesDataThatIsThereEvenWithoutPatience) {
  asio::write(server, asio::buffer("x", 1));
  socket.setPatience({Clock::now() + hours(1), hours(1)});
  transfer(1);
  socket.setPatience(Patience::none());
  char byte = 0;
  boost::system::error_code error;
  EXPECT_EQ(socket.read_some(asio::buffer(&byte, 1), error), 1U);
}

TEST_F(PollingSocketTest, RenewsTheWholeTimeWithEverySixtyFourKibibytes) {
  // The whole time is over at once, and no wait may last: only its renewal makes the single wait end first.
  const Clock::time_point over = Clock::now();
  socket.setPatience({over + hours(1), hours(1), hours(1)});
  transfer(1);  // now the connection is known to be up
  socket.setPatience({over, milliseconds(0), hours(1)});
  for (int i = 0; i < 15; ++i) transfer(4096);
  transfer(4095);
  EXPECT_EQ(endOfAReadWithoutData(), WaitEnd::kTotal);
  transfer(1);
  EXPECT_EQ(endOfAReadWithoutData(), WaitEnd::kIdle);
}

TEST_F(PollingSocketTest, PutsCancelBeforeEverythingElse) {
  asio::write(server, asio::buffer("x", 1));
  socket.setPatience({Clock::now() + hours(1), hours(1)});
  cancel.raise();
  EXPECT_EQ(endOfAReadWithoutData(), WaitEnd::kCancelled);
  cancel.clear();
  char byte = 0;
  boost::system::error_code error;
  EXPECT_EQ(socket.read_some(asio::buffer(&byte, 1), error), 1U);
}

}  // namespace
}  // namespace airsync
