// What a decoding benchmark stands on: a response in memory, and everything that reads it.
#ifndef BENCH_DECODING_H
#define BENCH_DECODING_H

#include <string>

#include "Documents.h"
#include "Endpoints.h"
#include "document/Element.h"
#include "http/Communications.h"
#include "parser/Parser.h"

namespace airsync_bench {

struct Decoding {
  Decoding(Kind kind, unsigned items)
      : document(SyncResponse(kind, items)),
        transport(document),
        comms(AIRSYNC_STACK::SERVER_INFO(), &transport, nullptr),
        folder(FolderFor(kind)) {
    // The memory of a first document comes from the system, a page at a time: that is not what is measured.
    AIRSYNC_STACK::SE_Destroy(Decode());
  }

  AIRSYNC_STACK::sml_element* Decode() {
    transport.Rewind();
    return AIRSYNC_STACK::SE_Deserialize(AIRSYNC_STACK::ENCODING_WBXML, &AIRSYNC_STACK::Communications::Read,
                                         comms);
  }

  void Process(const AIRSYNC_STACK::sml_element* tree) {
    AIRSYNC_STACK::Parser::PARSER_STATUS status = AIRSYNC_STACK::Parser::PARSER_NOT_RUN;
    parser.Sync(tree, &store, &folder, status);
  }

  std::string document;
  MemoryTransport transport;
  AIRSYNC_STACK::Communications comms;
  AIRSYNC_STACK::FOLDER_INFO folder;
  CountingStore store;
  AIRSYNC_STACK::Parser parser{nullptr};
};

}  // namespace airsync_bench

#endif
