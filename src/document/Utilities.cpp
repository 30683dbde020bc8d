#include "document/Utilities.h"

#include "api/AirSync.h"
#include "http/Communications.h"
#include "support/Assert.h"
#include "support/Memory.h"

namespace AIRSYNC_STACK {

namespace {

const UINT32 kFirstStringCapacity = 11;

bool IsBetween(char c, char first, char last) { return c >= first && c <= last; }

void PushBack(unsigned count, ByteChannel In, Communications& comms) {
  if (count) (comms.*In)(nullptr, -static_cast<int>(count));
}

}  // namespace

UINT8 ByteIn(ByteChannel In, Communications& comms) {
  if (In == &Communications::Read) return comms.ReadByte();
  UINT8 byte = 0;
  (comms.*In)(&byte, 1);
  return byte;
}

void ByteOut(UINT8 byte, ByteChannel Out, Communications& comms) { (comms.*Out)(&byte, 1); }

void BytesOut(const void* bytes, UINT32 count, ByteChannel Out, Communications& comms) {
  // A writing channel only reads what it is given.
  UINT8* position = static_cast<UINT8*>(const_cast<void*>(bytes));
  while (count) {
    const int step = count < INT32_MAX ? static_cast<int>(count) : INT32_MAX;
    (comms.*Out)(position, step);
    position += step;
    count -= static_cast<UINT32>(step);
  }
}

char* StringIn(ByteChannel In, Communications& comms) {
  UINT32 capacity = 0;
  return StringIn(In, comms, capacity);
}

char* StringIn(ByteChannel In, Communications& comms, UINT32& capacity) {
  capacity = kFirstStringCapacity;
  char* buffer = static_cast<char*>(AdapterMalloc(capacity));
  for (UINT32 i = 0;; ++i) {
    const UINT8 byte = ByteIn(In, comms);
    if (i == capacity) {
      buffer = static_cast<char*>(AdapterRealloc(buffer, 2 * capacity, capacity));
      if (!buffer) AirSync::getInstance()->AbortSync(AS_RESULT_OUT_OF_MEMORY);
      capacity *= 2;
    }
    buffer[i] = static_cast<char>(byte);
    if (!byte) return buffer;
    if (i == kLongestString) {
      buffer[i] = '\0';
      while (ByteIn(In, comms)) {
      }
      return buffer;
    }
  }
}

void StringOut(const char* text, ByteChannel Out, Communications& comms) {
  BytesOut(text, SmlStrlen(text), Out, comms);
}

UINT8 PeekAtNextByte(ByteChannel In, Communications& comms) {
  const UINT8 byte = ByteIn(In, comms);
  PushBack(1, In, comms);
  return byte;
}

void PeekAhead(UINT8* buffer, unsigned NumberOfBytesYouWantToPeekAhead, ByteChannel In,
               Communications& comms) {
  assert(NumberOfBytesYouWantToPeekAhead < (5 + 64));
  if (!NumberOfBytesYouWantToPeekAhead) return;
  (comms.*In)(buffer, static_cast<int>(NumberOfBytesYouWantToPeekAhead));
  PushBack(NumberOfBytesYouWantToPeekAhead, In, comms);
}

void ExpectByte(UINT8 byte, ByteChannel In, Communications& comms) {
  if (ByteIn(In, comms) != byte) AirSync::getInstance()->AbortSync(AS_RESULT_MALFORMED_DOCUMENT);
}

void Expect(const char* text, ByteChannel In, Communications& comms) {
  for (; *text; ++text) ExpectByte(static_cast<UINT8>(*text), In, comms);
}

void SkipUntil(const char* pattern, ByteChannel In, Communications& comms) {
  const UINT32 Length = SmlStrlen(pattern);
  assert(Length < (5 + 64));
  if (!Length) return;
  UINT8 window[kLookAheadLimit];
  for (;;) {
    (comms.*In)(window, static_cast<int>(Length));
    if (SmlStrncmp(reinterpret_cast<const char*>(window), pattern, Length) == 0) return;
    PushBack(Length - 1, In, comms);
  }
}

bool IsLetter(char c) { return IsBetween(c, 'a', 'z') || IsBetween(c, 'A', 'Z'); }

bool IsSpaceChar(char c) { return c == '\t' || c == '\n' || c == ' '; }

bool IsDigit(char c) { return IsBetween(c, '0', '9'); }

bool IsBaseNDigit(char c, UINT16 Base) {
  assert(Base == 10 || Base == 16);
  return IsDigit(c) || (Base == 16 && (IsBetween(c, 'a', 'f') || IsBetween(c, 'A', 'F')));
}

UINT16 DigitToInt(char c) {
  assert(IsBaseNDigit(c, 16));
  if (IsDigit(c)) return static_cast<UINT16>(c - '0');
  if (IsBetween(c, 'a', 'f')) return static_cast<UINT16>(c - 'a' + 10);
  if (!IsBetween(c, 'A', 'F')) assert(0);
  return static_cast<UINT16>(c - 'A' + 10);
}

UINT32 SmlStringToUnsignedInteger(const char* text) {
  UINT32 value = 0;
  for (; IsDigit(*text); ++text) value = value * 10 + DigitToInt(*text);
  return value;
}

void SmlUnsignedIntegerToString(char* buffer, UINT32 value) {
  unsigned digits = 1;
  for (UINT32 rest = value; rest > 9; rest /= 10) ++digits;
  buffer[digits] = '\0';
  for (; digits; value /= 10) buffer[--digits] = static_cast<char>('0' + value % 10);
}

}  // namespace AIRSYNC_STACK
