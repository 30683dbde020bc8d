#include "cli/Item.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/ExactName.h"
#include "cli/ExitError.h"
#include "cli/config/Paths.h"
#include "cli/output/Displayable.h"

namespace airsync {

OpenFolder::OpenFolder(const Context& context, Naming naming)
    : account(context.onlyAccount()),
      store(storeFile(context.state, account.name)),
      folder(naming == Naming::exact ? findExactFolder(store, context.options.folder)
                                     : store.findFolder(context.options.folder)) {}

OpenItem::OpenItem(const Context& context, Naming naming)
    : OpenFolder(context, naming),
      item(naming == Naming::exact ? findExactItem(store, folder, context.options.item)
                                   : store.findItem(folder.number, context.options.item)) {}

std::string OpenItem::subject() const { return fmt::format("item {} of folder \"{}\"", item, folder.path); }

std::string fetchCommand(const Folder& folder, ItemNumber item) {
  return fmt::format("airsync fetch {} {}", folder.serverId, item);
}

void refuse(const std::string& operation, const std::string& subject, const std::string& cause,
            const std::string& advice) {
  throw ExitError(ExitCode::kUsage, {.kind = ErrorKind::item,
                                     .operation = operation,
                                     .subject = subject,
                                     .cause = cause,
                                     .advice = advice});
}

void tellDone(Context& context, const OpenFolder& open, ItemNumber item, std::string_view action,
              std::string_view sentence) {
  context.output.document({{"account", open.account.name},
                           {"folder", open.folder.serverId},
                           {"number", item},
                           {"action", action}});
  context.output.done(fmt::format("{}: item {} {}", displayable(open.folder.path), item, sentence));
}

}  // namespace airsync
