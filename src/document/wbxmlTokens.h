// Byte values of WBXML 1.3, for the writer and the reader.
#ifndef KROAIRSYNC_DOCUMENT_WBXML_TOKENS_H
#define KROAIRSYNC_DOCUMENT_WBXML_TOKENS_H

#include "support/types.h"

namespace AIRSYNC_STACK {

enum WBXML_TOKEN_T : UINT8 {
  SWITCH_PAGE = 0x00,
  END = 0x01,
  ENTITY = 0x02,
  STR_I = 0x03,
  LITERAL = 0x04,
  EXT_I_0 = 0x40,
  EXT_I_1 = 0x41,
  EXT_I_2 = 0x42,
  PI = 0x43,
  EXT_T_0 = 0x80,
  EXT_T_1 = 0x81,
  EXT_T_2 = 0x82,
  STR_T = 0x83,
  EXT_0 = 0xC0,
  EXT_1 = 0xC1,
  EXT_2 = 0xC2,
  OPAQUE = 0xC3,
};

// Parts of a tag byte.
const UINT8 kTagHasAttributes = 0x80;
const UINT8 kTagHasContent = 0x40;
const UINT8 kTagTokenMask = 0x3F;

// The document's head.
const UINT8 kWbxmlVersion13 = 0x03;
const UINT8 kUnknownPublicId = 0x01;
const UINT8 kPublicIdInTable = 0x00;
const UINT8 kCharsetUnknown = 0x00;
const UINT8 kCharsetAscii = 0x03;
const UINT8 kCharsetUtf8 = 0x6A;

// Multi-byte integers: groups of seven bits, the highest first; all bytes but the last carry the flag.
const unsigned kGroupBits = 7;
const UINT8 kGroupMask = 0x7F;
const UINT8 kGroupFollows = 0x80;

}  // namespace AIRSYNC_STACK

#endif
