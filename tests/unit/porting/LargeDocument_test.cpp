// A document of millions of elements: on memory that is not counted, since counting would take a minute.
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "document/wbxml.h"
#include "http/Communications.h"
#include "support/CatchAbort.h"
#include "support/ScriptedTransport.h"

namespace airsync_test {
namespace {

using namespace AIRSYNC_STACK;

// Delivers bytes without a record of it.
class Stream final : public ScriptedTransport {
 public:
  explicit Stream(std::string bytes) : bytes_(std::move(bytes)) {}
  std::size_t Delivered() const { return delivered_; }

  SYNC_RESULT Read(UINT8* destination, INT32* count, INT32) override {
    const std::size_t wanted = static_cast<std::size_t>(*count);
    if (wanted > bytes_.size() - delivered_) return kFailure;
    bytes_.copy(reinterpret_cast<char*>(destination), wanted, delivered_);
    delivered_ += wanted;
    return 0;
  }

 private:
  std::string bytes_;
  std::size_t delivered_ = 0;
};

// An element with so many empty children.
std::string Parent(std::size_t children) { return '\x45' + std::string(children, '\x05') + '\x01'; }

// The root and 31 times 65,569 elements (one, 32 children, 2,048 children of each) are 2,032,640. With one
// more that has 64,511 children they are 2,097,152, and then comes the next. Keeps S2.
TEST(LargeDocument, IsRefusedAtTheElementAfterTwoMillion) {
  std::string group(1, '\x45');
  for (int i = 0; i < 32; ++i) group += Parent(2048);
  group += '\x01';
  std::string document = {'\x03', '\x01', '\x6A', '\0', '\x45'};
  for (int i = 0; i < 31; ++i) document += group;
  document += Parent(64'511);
  Stream stream(document + "\x05\x01");
  Communications comms(SERVER_INFO(), &stream, nullptr);
  const ByteChannel read = &Communications::Read;
  EXPECT_EQ(CatchAbort([&] { WBXMLParseSmlDocument(read, comms); }), 0x8001000bU);
  EXPECT_EQ(stream.Delivered(), document.size() + 1);
}

}  // namespace
}  // namespace airsync_test
