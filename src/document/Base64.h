// Base64, with the standard alphabet and "=" as padding.
#ifndef KROAIRSYNC_DOCUMENT_BASE64_H
#define KROAIRSYNC_DOCUMENT_BASE64_H

#include "support/types.h"

namespace AIRSYNC_STACK {

/// Writes the text form of `length` bytes and a terminator: 4 * ceil(length / 3) + 1 bytes. A length of 0 or
/// less gives the empty text. Nothing beyond the source is read.
void SmlBase64Encode(char* destination, const UINT8* source, int length);

/// Writes the bytes that the text stands for: up to 3/4 of its length, and one byte more for a terminator.
/// The result is meant as text: it ends at its first NUL, and no length is reported.
///
/// False for a length that is no multiple of 4 (nothing is written) and for a character outside the alphabet
/// (what came before it stays written). "=" counts as 0; as the fourth of its group it ends the decoding.
bool SmlBase64Decode(char* destination, const char* source);

}  // namespace AIRSYNC_STACK

#endif
