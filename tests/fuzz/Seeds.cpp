// Writes what a fuzzer begins with: seeds made of the golden documents, and the vocabulary as a dictionary.
//
//   fuzz_seeds DIRECTORY     fills DIRECTORY/<program> for each, and DIRECTORY/vocabulary.dict
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "document/Vocabulary.h"
#include "support/ForeignPages.h"
#include "support/GoldenDocument.h"
#include "support/HexAndText.h"

namespace {

using namespace AIRSYNC_STACK;

void Write(const std::filesystem::path& file, const std::string& bytes) {
  std::ofstream stream(file, std::ios::binary);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Each document goes to each command (there are 16) and class; a fuzzer keeps those that mean something.
void WriteDocument(const std::filesystem::path& directory, const std::string& name, char dataType,
                   const std::string& document) {
  constexpr int kCommands = 16;
  for (int command = 0; command < kCommands; ++command) {
    const std::string file = name + "-" + std::to_string(command);
    Write(directory / "facade" / file, std::string{static_cast<char>(command), dataType} + document);
    Write(directory / "wbxml" / file,
          std::string(1, static_cast<char>(command % 12 + 12 * dataType)) + document);
  }
}

void WriteSeeds(const std::filesystem::path& directory) {
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
    WriteDocument(directory, name, dataType, document);
  }
  for (const airsync_test::ForeignPageAnswer& answer : airsync_test::kForeignPageAnswers) {
    WriteDocument(directory, std::string("xmlns-") + answer.name, 0,
                  airsync_test::HexAndText(answer.document));
  }
  Write(directory / "xml" / "sync",
        "<Sync><Collections><Collection><Class>Contacts</Class></Collection></Collections></Sync>");
  Write(directory / "xml" / "attribute", "<AirNotify xmlns=\"AirNotify:\"><DeviceInfo/></AirNotify>");
  Write(directory / "xml" / "texts",
        "<?xml version=\"1.0\"?><!DOCTYPE a><a><!-- c --><b>&lt;&amp;&#65;&#x42;</b><![CDATA[<x>]]></a>");
}

// For the host's readers: what they are given on a good day.
void WriteHostSeeds(const std::filesystem::path& directory) {
  for (const char* target : {"records", "config", "response", "store", "texts", "server"}) {
    std::filesystem::create_directories(directory / target);
  }
  Write(directory / "texts" / "id", "2:1/3 12");
  Write(directory / "records" / "contact",
        "0{\"FirstName\":\"Ann\",\"Birthday\":\"1970-01-31\",\"Categories\":[\"a\",\"b\"],\"BodySize\":3}");
  Write(directory / "records" / "event",
        "1{\"Subject\":\"s\",\"StartTime\":\"2026-11-23T09:00:00Z\",\"AllDayEvent\":true,\"Reminder\":15,"
        "\"Attendees\":[{\"Name\":\"n\",\"Email\":\"e\"}],\"Recurrence\":{\"Type\":1,\"Interval\":1},"
        "\"Exceptions\":[{\"ExceptionStartTime\":\"2026-11-30T09:00:00Z\",\"Deleted\":true}]}");
  Write(directory / "config" / "account",
        "[account.work]\nurl = \"https://mail.example.com/sync\"\nuser = \"ann\"\ndomain = \"d\"\n"
        "password_command = [\"a\", \"b\"]\nidle_timeout = 5\n[account.work.folder.\"Contacts\"]\n"
        "conflict = \"local\"\nsupported = [\"FirstName\"]\n");
  Write(directory / "response" / "length", "0HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello");
  Write(directory / "response" / "chunked",
        "1HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nMS-ASProtocolVersions: 2.0\r\n\r\n"
        "5;x=y\r\nhello\r\n0\r\nA: b\r\n\r\n");
  Write(directory / "store" / "header", std::string("\x40\x00\x00\x01", 4) + "anything");
}

// A request of each command, with every document.
void WriteServerSeeds(const std::filesystem::path& directory) {
  const std::string rest = "&User=demo&DeviceId=D1&DeviceType=PC\n";
  for (const auto& entry : std::filesystem::directory_iterator(AIRSYNC_WIRE_DIRECTORY)) {
    const std::string name = entry.path().filename();
    const std::string document = airsync_test::GoldenDocument(name);
    for (const char* command : {"Sync", "FolderSync", "FolderCreate", "GetItemEstimate", "MoveItems",
                                "MeetingResponse", "Notify"}) {
      Write(directory / (name + "-" + command), std::string("/sync?Cmd=") + command + rest + document);
    }
  }
  Write(directory / "message", "/sync?Cmd=SendMail&SaveInSent=T" + rest +
                                   "From: a@b\r\nTo: demo@example.com\r\nContent-Type: multipart/mixed; "
                                   "boundary=x\r\n\r\n--x\r\n\r\ntext\r\n--x--\r\n");
  Write(directory / "admin", "/admin/items?folder=f9\n{\"FirstName\": \"Ann\"}");
}

void WriteDictionary(const std::filesystem::path& file) {
  std::ofstream dictionary(file);
  dictionary << "\"\\x06xmlns\\x00\"\n";
  for (int page = 0; page < kCodePages; ++page) {
    dictionary << "\"\\x04\\x00\\x03" << NamespaceOfPage(static_cast<UINT8>(page)) << "\\x00\\x01\"\n";
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
  WriteHostSeeds(argv[1]);
  WriteServerSeeds(std::filesystem::path(argv[1]) / "server");
  WriteDictionary(std::filesystem::path(argv[1]) / "vocabulary.dict");
  return 0;
}
