#include "protocol/FolderCommands.h"

#include <functional>

#include "data/Chain.h"
#include "protocol/FolderRules.h"
#include "protocol/Status.h"
#include "support/Numbers.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

Element failure(std::string_view root, int status) {
  Element response(Page::Folders, root);
  response.add("Status", std::to_string(status));
  return response;
}

std::string keyOf(const Element& request, std::string_view root) {
  if (!request.is(Page::Folders, root))
    throw BadRequest("the root of this request must be " + std::string(root));
  const std::string_view key = request.textOf("SyncKey");
  if (key.empty()) throw BadRequest("the request has no SyncKey");
  return std::string(key);
}

// What a client needs to know of a folder, in an Add, an Update or a Folder element.
void describe(const Folder& folder, Element& element) {
  element.add("ServerId", folder.id);
  element.add("ParentId", folder.parent);
  element.add("DisplayName", folder.name);
  element.add("Type", std::to_string(folder.type));
}

// All changes that the device does not know of, and their count before them.
Element collectChanges(State& state, Chain& chain) {
  Element changes(Page::Folders, "Changes");
  changes.add("Count");
  for (const Folder& folder : state.folders.list(true)) {
    const auto known = chain.known(folder.id);
    if (folder.gone) {
      if (!known) continue;
      changes.add("Delete").add("ServerId", folder.id);
      chain.forget(folder.id);
    } else if (!known || *known < folder.revision) {
      describe(folder, changes.add(known ? "Update" : "Add"));
      chain.learn(folder.id, folder.revision);
    }
  }
  changes.children.front().text = std::to_string(changes.children.size() - 1);
  return changes;
}

struct Outcome {
  int status;
  std::string id;  // of the folder that was created, changed or deleted
};

// A command that changes one folder. The chain is touched only when the change succeeded.
Element runChange(State& state, const std::string& device, const Element& request, std::string_view root,
                  const std::function<Outcome()>& change) {
  const std::string key = keyOf(request, root);
  const std::string bytes = encode(request);
  Chain chain(state.database, device, kHierarchy);
  if (const auto stored = chain.answerTo(key, bytes)) return decode(*stored);
  const KeyMatch match = chain.match(key);
  if (match != KeyMatch::Current && match != KeyMatch::Repeated) return failure(root, kInvalidHierarchyKey);
  const Outcome outcome = change();
  if (outcome.status != kSuccess) return failure(root, outcome.status);
  if (match == KeyMatch::Repeated)
    chain.rewind();
  else
    chain.advance();
  Element response(Page::Folders, root);
  response.add("Status", std::to_string(kSuccess));
  response.add("SyncKey", chain.nextKey());
  if (root == "CreateCmd") response.add("ServerId", outcome.id);
  if (const auto folder = state.folders.find(outcome.id))
    chain.learn(folder->id, folder->revision);
  else
    chain.forget(outcome.id);
  chain.finish(key, bytes, encode(response));
  return response;
}

}  // namespace

Element runFolderSync(State& state, const std::string& device, const Element& request) {
  const std::string key = keyOf(request, "FolderSync");
  const std::string bytes = encode(request);
  Chain chain(state.database, device, kHierarchy);
  if (const auto stored = chain.answerTo(key, bytes)) return decode(*stored);
  switch (chain.match(key)) {
    case KeyMatch::Initial:
      chain.start("*");
      break;
    case KeyMatch::Current:
      chain.advance();
      break;
    case KeyMatch::Repeated:
      chain.rewind();
      break;
    case KeyMatch::Unknown:
      return failure("FolderSync", kInvalidHierarchyKey);
  }
  Element response(Page::Folders, "FolderSync");
  response.add("Status", std::to_string(kSuccess));
  response.add("SyncKey", chain.nextKey());
  response.add(collectChanges(state, chain));
  chain.finish(key, bytes, encode(response));
  return response;
}

Element runFolderCreate(State& state, const std::string& device, const Element& request) {
  return runChange(state, device, request, "CreateCmd", [&] {
    Outcome outcome{};
    outcome.status = createFolder(state, std::string(request.textOf("ParentId")),
                                  std::string(request.textOf("DisplayName")),
                                  numberOr(request.textOf("Type"), 0), outcome.id);
    return outcome;
  });
}

Element runFolderDelete(State& state, const std::string& device, const Element& request) {
  return runChange(state, device, request, "DeleteCmd", [&] {
    const std::string id(request.textOf("ServerId"));
    return Outcome{deleteFolder(state, id), id};
  });
}

Element runFolderUpdate(State& state, const std::string& device, const Element& request) {
  return runChange(state, device, request, "UpdateCmd", [&] {
    const std::string id(request.textOf("ServerId"));
    return Outcome{updateFolder(state, id, std::string(request.textOf("ParentId")),
                                std::string(request.textOf("DisplayName"))),
                   id};
  });
}

Element runGetHierarchy(State& state) {
  Element response(Page::Folders, "Folders");
  for (const Folder& folder : state.folders.list()) {
    Element& entry = response.add("Folder");
    entry.add("DisplayName", folder.name);
    entry.add("ServerId", folder.id);
    entry.add("Type", std::to_string(folder.type));
    entry.add("ParentId", folder.parent);
  }
  return response;
}

}  // namespace demoserver
