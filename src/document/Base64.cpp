#include "document/Base64.h"

#include "document/Utilities.h"

namespace AIRSYNC_STACK {

namespace {

const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The six bits that a character stands for; negative for a character outside the alphabet.
int SixBits(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (IsDigit(c)) return c - '0' + 52;
  if (c == '+') return 62;
  if (c == '/') return 63;
  return c == '=' ? 0 : -1;
}

}  // namespace

void SmlBase64Encode(char* destination, const UINT8* source, int length) {
  int position = 0;
  for (; position < length; position += 3) {
    // Bytes beyond the end count as 0; the padding covers what they would have produced.
    const unsigned b0 = source[position];
    const unsigned b1 = length - position > 1 ? source[position + 1] : 0;
    const unsigned b2 = length - position > 2 ? source[position + 2] : 0;
    *destination++ = kAlphabet[b0 >> 2];
    *destination++ = kAlphabet[((b0 & 3) << 4) | (b1 >> 4)];
    *destination++ = length - position > 1 ? kAlphabet[((b1 & 15) << 2) | (b2 >> 6)] : '=';
    *destination++ = length - position > 2 ? kAlphabet[b2 & 63] : '=';
  }
  *destination = '\0';
}

bool SmlBase64Decode(char* destination, const char* source) {
  if (SmlStrlen(source) % 4 != 0) return false;
  *destination = '\0';
  for (; *source; source += 4) {
    int bits[4];
    for (int i = 0; i < 4; ++i) {
      bits[i] = SixBits(source[i]);
      if (bits[i] < 0) return false;
    }
    *destination++ = static_cast<char>((bits[0] << 2) | (bits[1] >> 4));
    *destination++ = static_cast<char>(((bits[1] & 15) << 4) | (bits[2] >> 2));
    *destination++ = static_cast<char>(((bits[2] & 3) << 6) | bits[3]);
    if (destination[-1]) *destination = '\0';
    if (source[3] == '=') return true;
  }
  return true;
}

}  // namespace AIRSYNC_STACK
