// The XML reader; what it read is written in both encodings.
#include "api/ErrorFrame.h"
#include "document/Element.h"
#include "document/xml.h"
#include "fuzz/Harness.h"
#include "http/Communications.h"
#include "support/Memory.h"

using namespace AIRSYNC_STACK;
using namespace airsync_fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Input input(data, size);
  BodyTransport transport(input.Rest(), 1);
  Communications comms(SERVER_INFO(), &transport, nullptr);
  for (const ENCODINGTYPE encoding : {ENCODING_XML, ENCODING_WBXML}) {
    transport.BeginBody();
    UntilExpectedStop([&] {
      RunFramed([&]() -> SYNC_RESULT {
        sml_element* const root = XMLParseSmlDocument(&Communications::Read, comms);
        SE_HowLongIsIt(root, encoding, &Communications::CountOutStream, comms);
        return AS_RESULT_OK;
      });
    });
    DisarmFrame();
    AdapterFreeAll();
  }
  return 0;
}
