// The byte channel: how documents are written, measured and read without either end knowing the other.
#ifndef KROAIRSYNC_DOCUMENT_BYTE_CHANNEL_H
#define KROAIRSYNC_DOCUMENT_BYTE_CHANNEL_H

#include "support/types.h"

namespace AIRSYNC_STACK {

class Communications;

/// A Communications member that takes bytes (Send), counts them (CountOutStream) or delivers them (Read).
///
/// A positive count transfers exactly that many bytes. On the reading side a null buffer with a negative
/// count gives the last -count bytes back (68 at most), so that they are read again. There is no status: a
/// channel that can't go on ends the exchange.
typedef void (Communications::*ByteChannel)(UINT8* bytes, int count);

}  // namespace AIRSYNC_STACK

#endif
