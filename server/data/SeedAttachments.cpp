#include <array>

#include "data/SeedMails.h"

namespace demoserver {
namespace {

std::string everyByte(std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(i * 7 % 256);
  return bytes;
}

std::string lines(int count) {
  std::string text;
  for (int i = 1; i <= count; ++i) text += "Zeile " + std::to_string(i) + ": größer & <kleiner>\r\n";
  return text;
}

struct Sort {
  const char* name;
  const char* type;
  std::string (*content)();
  int method = 1;
};

constexpr std::array<Sort, 8> kSorts = {{
    {"notes.txt", "text/plain", [] { return lines(12); }},
    {"Foto am See.jpg", "image/jpeg", [] { return everyByte(3000); }},
    {"empty.dat", "application/octet-stream", [] { return std::string(); }},
    {"2026/11 report & figures.pdf", "application/pdf", [] { return "%PDF-1.4\n" + everyByte(777); }},
    {"写真 📷.png", "image/png", [] { return "\x89PNG\r\n\x1A\n" + everyByte(500); }},
    {"Fwd: Übersicht.eml", "message/rfc822",
     [] { return std::string("From: ann@example.org\r\nSubject: Inner\r\n\r\nHello\r\n"); }, 5},
    {"100% \"done\"; a=b?.csv", "text/csv", [] { return std::string("a;b\r\n1;2\r\n"); }},
    {"archive.zip", "application/zip", [] { return "PK\x03\x04" + everyByte(70'000); }},
}};

}  // namespace

std::vector<SeedAttachment> seedAttachments(int number) {
  std::vector<SeedAttachment> attachments;
  for (int i = 0; i <= number % 3; ++i) {
    const Sort& sort = kSorts[static_cast<std::size_t>(number + i) % kSorts.size()];
    attachments.push_back({sort.name, sort.type, sort.content(), sort.method});
  }
  return attachments;
}

}  // namespace demoserver
