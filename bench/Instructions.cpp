// Runs one operation once, so that scripts/instructions can count what it executes.
//   library_instructions decode|storage|free|measure|write KIND ITEMS
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Decoding.h"

using namespace AIRSYNC_STACK;
using namespace airsync_bench;

namespace {

// The count covers what is called from here.
__attribute__((noinline)) void CountedOperation(const char* operation, Decoding& decoding,
                                                sml_element*& tree) {
  if (std::strcmp(operation, "decode") == 0) {
    tree = decoding.Decode();
  } else if (std::strcmp(operation, "storage") == 0) {
    decoding.Process(tree);
  } else if (std::strcmp(operation, "free") == 0) {
    SE_Destroy(tree);
    tree = nullptr;
  } else if (std::strcmp(operation, "measure") == 0) {
    SE_HowLongIsIt(tree, ENCODING_WBXML, &Communications::CountOutStream, decoding.comms);
  } else if (std::strcmp(operation, "write") == 0) {
    SE_Serialize(tree, ENCODING_WBXML, &Communications::Send, decoding.comms);
  } else {
    std::fprintf(stderr, "library_instructions: there is no operation '%s'\n", operation);
    std::exit(2);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("library_instructions decode|storage|free|measure|write contacts|events|mails ITEMS\n",
               stderr);
    return 2;
  }
  for (const Kind kind : kKinds) {
    if (std::strcmp(argv[2], NameOf(kind)) != 0) continue;
    Decoding decoding(kind, static_cast<unsigned>(std::strtoul(argv[3], nullptr, 10)));
    const bool makesTree = std::strcmp(argv[1], "decode") == 0;
    sml_element* tree = makesTree ? nullptr : decoding.Decode();
    const bool writes = std::strcmp(argv[1], "measure") == 0 || std::strcmp(argv[1], "write") == 0;
    if (writes) RestorePages(tree, kind);
    CountedOperation(argv[1], decoding, tree);
    SE_Destroy(tree);
    return 0;
  }
  std::fprintf(stderr, "library_instructions: there is no kind '%s'\n", argv[2]);
  return 2;
}
