// The porting functions for texts and bytes, over the standard library. Null texts count as empty.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

const char* TextOf(const char* text) { return text == nullptr ? "" : text; }

}  // namespace

void SmlMemcpy(void* destination, const void* source, UINT32 size) {
  if (size != 0) std::memcpy(destination, source, size);
}

void SmlMemmove(void* destination, const void* source, UINT32 size) {
  if (size != 0) std::memmove(destination, source, size);
}

void SmlMemset(void* destination, UINT8 value, UINT32 size) {
  if (size != 0) std::memset(destination, value, size);
}

UINT32 SmlStrlen(const char* text) { return static_cast<UINT32>(std::strlen(TextOf(text))); }

// The library's callers make the room; these take none into account, as their names say.
// NOLINTNEXTLINE(clang-analyzer-security.insecureAPI.strcpy)
void SmlStrcpy(char* destination, const char* source) { std::strcpy(destination, TextOf(source)); }

void SmlStrncpy(char* destination, const char* source, UINT32 size) {
  std::strncpy(destination, TextOf(source), size);
}

// NOLINTNEXTLINE(clang-analyzer-security.insecureAPI.strcpy): as above
void SmlStrcat(char* destination, const char* source) { std::strcat(destination, TextOf(source)); }

// Not the difference that strcmp returns: cut to 16 bits it could become 0.
INT16 SmlStrcmp(const char* left, const char* right) {
  const int order = std::strcmp(TextOf(left), TextOf(right));
  return static_cast<INT16>((order > 0) - (order < 0));
}

int SmlStrncmp(const char* left, const char* right, UINT32 size) {
  return std::strncmp(TextOf(left), TextOf(right), size);
}

char* SmlStrchr(const char* text, int character) {
  return const_cast<char*>(text == nullptr ? nullptr : std::strchr(text, character));
}

char* SmlStrstr(const char* text, const char* pattern) {
  return const_cast<char*>(text == nullptr ? nullptr : std::strstr(text, TextOf(pattern)));
}

// NOLINTNEXTLINE(cert-dcl50-cpp): the porting interface has it so
void SmlSprintf(char* buffer, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  static_cast<void>(std::vsprintf(buffer, format, arguments));
  va_end(arguments);
}

// NOLINTNEXTLINE(cert-err34-c): what is no number counts as 0
INT32 SmlAtoi(const char* text) { return std::atoi(TextOf(text)); }

// What the library reports to its caller afterwards is enough: there is nobody else to tell.
void SmlUnexpected(bool) {}

}  // namespace AIRSYNC_STACK
