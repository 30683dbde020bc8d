// Byte primitives over the byte channel, and the small text helpers that the library shares.
//
// A primitive ends the exchange (AirSync::AbortSync) instead of returning a failure. Assertions are named.
#ifndef KROAIRSYNC_DOCUMENT_UTILITIES_H
#define KROAIRSYNC_DOCUMENT_UTILITIES_H

#include "document/ByteChannel.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

/// How far the reading channel can step back, with one byte to spare: "5 + 64", a tag, its markup and a name
/// of 64 characters.
const unsigned kLookAheadLimit = 5 + 64;

/// Strings from the wire are cut after so many characters.
const UINT32 kLongestString = 65536;

UINT8 ByteIn(ByteChannel In, Communications& comms);
void ByteOut(UINT8 byte, ByteChannel Out, Communications& comms);

/// Writes `count` bytes; none for 0.
void BytesOut(const void* bytes, UINT32 count, ByteChannel Out, Communications& comms);

/// Reads a NUL-terminated string into tracked memory, which the caller frees. What exceeds kLongestString
/// characters is read and dropped.
char* StringIn(ByteChannel In, Communications& comms);
/// The same; `capacity` receives the size of the block.
char* StringIn(ByteChannel In, Communications& comms, UINT32& capacity);

/// Writes the characters without the terminator.
void StringOut(const char* text, ByteChannel Out, Communications& comms);

/// The next byte, which will be read again.
UINT8 PeekAtNextByte(ByteChannel In, Communications& comms);

/// The next bytes, which will be read again.
/// Asserts "NumberOfBytesYouWantToPeekAhead < (5 + 64)".
void PeekAhead(UINT8* buffer, unsigned NumberOfBytesYouWantToPeekAhead, ByteChannel In,
               Communications& comms);

/// Reads one byte, or each character of the text; AS_RESULT_MALFORMED_DOCUMENT when another one comes.
void ExpectByte(UINT8 byte, ByteChannel In, Communications& comms);
void Expect(const char* text, ByteChannel In, Communications& comms);

/// Reads up to and including the first occurrence of the pattern. Asserts "Length < (5 + 64)".
void SkipUntil(const char* pattern, ByteChannel In, Communications& comms);

// Character classes: ASCII only.
bool IsLetter(char c);
bool IsSpaceChar(char c);  // tab, line feed, space; not carriage return
bool IsDigit(char c);
/// Asserts "Base == 10 || Base == 16".
bool IsBaseNDigit(char c, UINT16 Base);
/// 0 to 15. Asserts "IsBaseNDigit(c, 16)".
UINT16 DigitToInt(char c);

/// The leading decimal digits as a number, modulo 2^32; 0 when there is none.
UINT32 SmlStringToUnsignedInteger(const char* text);

/// Writes the decimal form and a terminator: at most 11 bytes.
void SmlUnsignedIntegerToString(char* buffer, UINT32 value);

/// Whether both texts are the same, where a null one counts as empty. Most texts differ in their first byte:
/// to see that without a call halves the time in which records are filled from a tree.
inline bool SameText(const char* left, const char* right) {
  if (!left) left = "";
  if (!right) right = "";
  return *left == *right && SmlStrcmp(left, right) == 0;
}

}  // namespace AIRSYNC_STACK

#endif
