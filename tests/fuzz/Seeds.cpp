// Writes what a fuzzer begins with: seeds made of the golden documents, and the vocabulary as a dictionary.
//
//   fuzz_seeds DIRECTORY     fills DIRECTORY/facade, /wbxml, /xml and DIRECTORY/vocabulary.dict
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "document/Vocabulary.h"
#include "support/GoldenDocument.h"

namespace {

using namespace AIRSYNC_STACK;

void Write(const std::filesystem::path& file, const std::string& bytes) {
  std::ofstream stream(file, std::ios::binary);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Each document goes to each command (there are 16) and class; a fuzzer keeps those that mean something.
void WriteSeeds(const std::filesystem::path& directory) {
  constexpr int kCommands = 16;
  for (const char* target : {"facade", "wbxml", "xml"}) {
    std::filesystem::create_directories(directory / target);
  }
  for (const auto& entry : std::filesystem::directory_iterator(AIRSYNC_WIRE_DIRECTORY)) {
    const std::string name = entry.path().filename();
    const std::string document = airsync_test::GoldenDocument(name);
    const char dataType = name.find("mail") != std::string::npos ? 2
                          : name.find("event") != std::string::npos || name.find("cal") != std::string::npos
                              ? 1
                              : 0;
    for (int command = 0; command < kCommands; ++command) {
      const std::string file = name + "-" + std::to_string(command);
      Write(directory / "facade" / file, std::string{static_cast<char>(command), dataType} + document);
      Write(directory / "wbxml" / file,
            std::string(1, static_cast<char>(command % 12 + 12 * dataType)) + document);
    }
  }
  Write(directory / "xml" / "sync",
        "<Sync><Collections><Collection><Class>Contacts</Class></Collection></Collections></Sync>");
  Write(directory / "xml" / "attribute", "<AirNotify xmlns=\"AirNotify:\"><DeviceInfo/></AirNotify>");
  Write(directory / "xml" / "texts",
        "<?xml version=\"1.0\"?><!DOCTYPE a><a><!-- c --><b>&lt;&amp;&#65;&#x42;</b><![CDATA[<x>]]></a>");
}

void WriteDictionary(const std::filesystem::path& file) {
  std::ofstream dictionary(file);
  for (int page = 0; page < kCodePages; ++page) {
    dictionary << "\"\\x00\\x0" << page << "\"\n";
    for (int token = 5; token < 0x40; ++token) {
      const char* const tag = TagOfToken(static_cast<UINT8>(page), static_cast<UINT8>(token));
      if (tag == nullptr || *tag == '\0') continue;
      char line[64];
      std::snprintf(line, sizeof line, "\"\\x%02x\\x03\"", static_cast<unsigned>(token | 0x40));
      dictionary << line << "\n\"" << tag << "\"\n";
    }
  }
  for (const char* token :
       {"\\x03\\x01\\x6a\\x00", "\\x83", "\\xc3", "\\x04", "\\x85", "\\xc0", "\\xff\\xff\\xff\\xff\\x7f"}) {
    dictionary << "\"" << token << "\"\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: fuzz_seeds DIRECTORY\n", stderr);
    return 2;
  }
  WriteSeeds(argv[1]);
  WriteDictionary(std::filesystem::path(argv[1]) / "vocabulary.dict");
  return 0;
}
