// The item that a command line names, in its store.
#ifndef AIRSYNC_CLI_ITEM_H
#define AIRSYNC_CLI_ITEM_H

#include <string>
#include <string_view>

#include "cli/Commands.h"
#include "store/Store.h"

namespace airsync {

/// How a command line names folders and items: as it is convenient, or beyond doubt; see ExactName.h.
enum class Naming { easy, exact };

/// The store of the one account, and the folder named on the command line. Throws Error.
struct OpenFolder {
  explicit OpenFolder(const Context& context, Naming naming = Naming::easy);

  const Account& account;
  Store store;
  Folder folder;
};

/// The same with the item named on the command line.
struct OpenItem : OpenFolder {
  explicit OpenItem(const Context& context, Naming naming = Naming::easy);

  /// "item 12 of folder "Inbox"", for messages.
  std::string subject() const;

  ItemNumber item;
};

/// What gets the whole of an item: "airsync fetch f2 12", for advice.
std::string fetchCommand(const Folder& folder, ItemNumber item);

/// Throws ExitError (kUsage) about an item, or about a folder.
[[noreturn]] void refuse(const std::string& operation, const std::string& subject, const std::string& cause,
                         const std::string& advice);

/// Tells that something was done to an item: `action` is its name for machines, `sentence` what people read.
void tellDone(Context& context, const OpenFolder& open, ItemNumber item, std::string_view action,
              std::string_view sentence);

}  // namespace airsync

#endif
