// The porting layer: functions that the host defines, once, for its platform.
//
// The library does its memory and string work through them and leaves them undefined in its file; a program
// that loads the library provides them. Unless it is told otherwise, each one means what the standard
// function of the same name without the prefix means. They are called on the thread that drives the library
// and need no locking of their own. The library passes null to none of them but SmlStrcmp; a port in which
// null texts count as empty everywhere is the safe choice.
#ifndef KROAIRSYNC_SUPPORT_PORTING_H
#define KROAIRSYNC_SUPPORT_PORTING_H

#include "support/types.h"

namespace AIRSYNC_STACK {

/// A block of `size` bytes, not cleared, aligned for any object; null when there is no memory left: the
/// running operation then ends with AS_RESULT_OUT_OF_MEMORY. `size` may be 0.
AIRSYNC_API void* SmlMalloc(UINT32 size);

/// Gives back a block that SmlMalloc or SmlRealloc returned; never null.
AIRSYNC_API void SmlFree(void* block);

/// Grows a block, keeping what it holds. `block` is never null and `size` never less than before. Null when
/// there is no memory left; the old block then stays as it is.
AIRSYNC_API void* SmlRealloc(void* block, UINT32 size);

AIRSYNC_API void SmlMemcpy(void* destination, const void* source, UINT32 size);
AIRSYNC_API void SmlMemmove(void* destination, const void* source, UINT32 size);
AIRSYNC_API void SmlMemset(void* destination, UINT8 value, UINT32 size);

AIRSYNC_API UINT32 SmlStrlen(const char* text);
AIRSYNC_API void SmlStrcpy(char* destination, const char* source);
/// Copies at most `size` characters; writes no terminator when the source is longer.
AIRSYNC_API void SmlStrncpy(char* destination, const char* source, UINT32 size);
AIRSYNC_API void SmlStrcat(char* destination, const char* source);

/// Zero when the texts are equal, exactly and with their case; any other value when they differ.
/// Must accept null (as the empty text): a search through a tree compares values that may be absent.
AIRSYNC_API INT16 SmlStrcmp(const char* left, const char* right);
AIRSYNC_API int SmlStrncmp(const char* left, const char* right, UINT32 size);
AIRSYNC_API char* SmlStrchr(const char* text, int character);
AIRSYNC_API char* SmlStrstr(const char* text, const char* pattern);

/// Formats; only %d (also %02d, %03d, %3d, %04d), %02x and %s are used.
AIRSYNC_API void SmlSprintf(char* buffer, const char* format, ...) __attribute__((format(printf, 2, 3)));

AIRSYNC_API INT32 SmlAtoi(const char* text);

/// Told, with false, of a configuration that can't be right: a server address without "http://" and
/// "https://". It must return.
AIRSYNC_API void SmlUnexpected(bool expectation);

}  // namespace AIRSYNC_STACK

#endif
