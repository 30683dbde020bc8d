// Moving items on the server, in as many requests as it takes.
#ifndef AIRSYNC_CLI_SESSION_MOVES_H
#define AIRSYNC_CLI_SESSION_MOVES_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "cli/RemoteItem.h"
#include "cli/session/Report.h"
#include "cli/session/Turn.h"

namespace airsync {

/// What a request of moves may measure. The library refuses one of more than 10,000 bytes, but counts modulo
/// 65,536: its measure can't be asked of a list of any length.
inline constexpr std::size_t kLargestMoves = 8'000;

/// The document of a request around its moves, and one move in it, as the encoding writes them.
inline constexpr std::size_t kMovesFrame = 8;
std::size_t measuredMove(const std::string& item, const std::string& source, const std::string& destination);

/// How many of `items`, from the one at `first` on, go into one request: at least one.
std::size_t batchSize(const std::vector<RemoteItem>& items, std::size_t first, const std::string& destination,
                      std::size_t largest = kLargestMoves);

/// What became of one item.
struct MovedItem {
  RemoteItem item;
  int status = 0;                    // the server's; 0: it said nothing of it
  std::optional<std::string> newId;  // where it was moved
  std::optional<Trouble> trouble;    // why it was not, or why that is not known
};

/// Moves all of them to `to`. What was moved is so here, too, at once, whatever becomes of the rest. Throws
/// nothing: an item that no request was sent for any more tells so in its trouble.
std::vector<MovedItem> moveItems(Turn& turn, const std::vector<RemoteItem>& items, const Folder& to);

}  // namespace airsync

#endif
