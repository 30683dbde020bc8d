// The integer names of the library's public records and of its porting layer.
#ifndef KROAIRSYNC_SUPPORT_TYPES_H
#define KROAIRSYNC_SUPPORT_TYPES_H

#include <cstdint>

// Global on purpose: assertion messages show the signatures of functions, and these names with them.
typedef std::uint8_t UINT8;
typedef std::uint16_t UINT16;
typedef std::uint32_t UINT32;
typedef std::int8_t INT8;
typedef std::int16_t INT16;
typedef std::int32_t INT32;

// Everything that the shared library exports carries this mark; the rest of it is hidden.
#define AIRSYNC_API __attribute__((visibility("default")))
// The private parts of an exported class carry this one.
#define AIRSYNC_LOCAL __attribute__((visibility("hidden")))

#endif
