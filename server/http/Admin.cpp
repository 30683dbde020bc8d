#include "http/Admin.h"

#include <array>
#include <nlohmann/json.hpp>
#include <optional>

#include "http/AdminReply.h"
#include "items/ItemClass.h"
#include "protocol/FolderRules.h"
#include "protocol/Status.h"

namespace demoserver {
namespace {

using nlohmann::json;

constexpr std::string_view kPrefix = "/admin/";

HttpReply folderResult(int status, const json& body, int success = 200) {
  if (status == kSuccess) return adminAnswer(success, body);
  const bool missing = status == kNoSuchFolder || status == kNoSuchParent;
  return adminError(missing ? 404 : 409, describeFolderStatus(status));
}

// A text member of the body; empty when it is missing or no text.
std::string member(const json& body, const char* name) {
  const auto found = body.is_object() ? body.find(name) : body.end();
  return found != body.end() && found->is_string() ? found->get<std::string>() : std::string();
}

// What every device has set up for notifications.
json showDevices(State& state) {
  json shown = json::array();
  for (const NotifySetup& setup : state.devices.list())
    shown.push_back({{"device", setup.device},
                     {"friendlyName", setup.friendlyName},
                     {"address", setup.address},
                     {"carrier", setup.carrier},
                     {"lifetime", setup.lifetime},
                     {"folders", setup.folders}});
  return shown;
}

HttpReply showState(State& state, const HttpRequest&) {
  json shown = {{"folders", state.folders.list().size()}, {"items", 0}, {"chains", json::array()}};
  std::int64_t items = 0;
  for (const Folder& folder : state.folders.list()) items += state.items.count(folder.id);
  shown["items"] = items;
  Query rows(state.database,
             "SELECT device, collection, lineage, number, previous_key, "
             "(SELECT count(*) FROM known k WHERE k.device = c.device AND k.collection = c.collection) "
             "FROM chains c ORDER BY device, collection");
  while (rows.next())
    shown["chains"].push_back({{"device", rows.text(0)},
                               {"collection", rows.text(1).empty() ? "hierarchy" : rows.text(1)},
                               {"key", rows.text(2) + "." + rows.text(3)},
                               {"previousKey", rows.text(4)},
                               {"held", rows.integer(5)}});
  shown["devices"] = showDevices(state);
  return adminAnswer(200, shown);
}

HttpReply listFolders(State& state, const HttpRequest&) {
  json shown = json::array();
  for (const Folder& folder : state.folders.list())
    shown.push_back({{"id", folder.id},
                     {"parent", folder.parent},
                     {"name", folder.name},
                     {"type", folder.type},
                     {"items", state.items.count(folder.id)}});
  return adminAnswer(200, shown);
}

HttpReply addFolder(State& state, const HttpRequest& request) {
  const json body = json::parse(request.body);
  const auto type = body.is_object() ? body.find("type") : body.end();
  const int number = type != body.end() && type->is_number_integer() ? type->get<int>() : kUserContacts;
  std::string id;
  const int status =
      createFolder(state, member(body, "parent").empty() ? kRootFolder : member(body, "parent"),
                   member(body, "name"), number, id);
  return folderResult(status, {{"id", id}}, 201);
}

HttpReply changeFolder(State& state, const HttpRequest& request) {
  const json body = json::parse(request.body);
  const std::string& id = request.parameter("id");
  return folderResult(updateFolder(state, id, member(body, "parent"), member(body, "name")), {{"id", id}});
}

HttpReply removeFolder(State& state, const HttpRequest& request) {
  const std::string& id = request.parameter("id");
  return folderResult(deleteFolder(state, id), {{"id", id}});
}

// The class of the items in the folder that the query names; null if it names none that can hold items.
const ItemClass* classOf(State& state, const HttpRequest& request) {
  const auto folder = state.folders.find(request.parameter("folder"));
  return folder ? itemClassOf(folder->type) : nullptr;
}

std::optional<Item> itemOf(State& state, const HttpRequest& request) {
  auto item = state.items.find(request.parameter("folder"), request.parameter("id"));
  if (item && item->gone) item.reset();
  return item;
}

HttpReply noSuchItem() { return adminError(404, "there is no such item in this folder"); }

json show(const ItemClass& itemClass, const Item& item) {
  return {{"id", item.id}, {"record", itemClass.view(item.record)}};
}

HttpReply listItems(State& state, const HttpRequest& request) {
  const ItemClass& itemClass = *classOf(state, request);
  if (request.query.contains("id")) {
    const auto item = itemOf(state, request);
    return item ? adminAnswer(200, show(itemClass, *item)) : noSuchItem();
  }
  json shown = json::array();
  for (const Item& item : state.items.list(request.parameter("folder")))
    shown.push_back(show(itemClass, item));
  return adminAnswer(200, shown);
}

HttpReply addItem(State& state, const HttpRequest& request) {
  const json record = classOf(state, request)->check(json::parse(request.body));
  return adminAnswer(201, {{"id", state.items.add(request.parameter("folder"), record).id}});
}

HttpReply changeItem(State& state, const HttpRequest& request) {
  const json record = classOf(state, request)->check(json::parse(request.body));
  const auto item = itemOf(state, request);
  if (!item) return noSuchItem();
  state.items.replace(item->id, record);
  return adminAnswer(200, {{"id", item->id}});
}

HttpReply removeItem(State& state, const HttpRequest& request) {
  const auto item = itemOf(state, request);
  if (!item) return noSuchItem();
  state.items.remove(item->id);
  return adminAnswer(200, {{"id", item->id}});
}

HttpReply showMessage(State& state, const HttpRequest& request) {
  const auto item = state.items.find(request.parameter("folder"), request.parameter("id"));
  if (!item || item->gone) return adminError(404, "there is no such mail in this folder");
  auto message = state.messages.find(item->id);
  if (!message) return adminError(404, "this mail was never sent as a message: it has its record only");
  return {200, "message/rfc822", std::move(*message), {}};
}

HttpReply showAttachment(State& state, const HttpRequest& request) {
  auto found = state.attachments.find(request.parameter("handle"));
  if (!found) return adminError(404, "there is no attachment of this handle");
  return {200, found->type, std::move(found->content), {}};
}

struct Route {
  std::string_view method;
  std::string_view what;
  HttpReply (*run)(State&, const HttpRequest&);
};

constexpr std::array<Route, 11> kRoutes = {{
    {"GET", "state", showState},
    {"GET", "folders", listFolders},
    {"POST", "folders", addFolder},
    {"PUT", "folders", changeFolder},
    {"DELETE", "folders", removeFolder},
    {"GET", "items", listItems},
    {"POST", "items", addItem},
    {"PUT", "items", changeItem},
    {"DELETE", "items", removeItem},
    {"GET", "message", showMessage},
    {"GET", "attachment", showAttachment},
}};

}  // namespace

bool isAdminPath(std::string_view path) { return path.starts_with(kPrefix); }

HttpReply runAdmin(State& state, const Controls& controls, const HttpRequest& request) try {
  const std::string_view what = std::string_view(request.path).substr(kPrefix.size());
  SQLite::Transaction transaction(state.database.handle());
  if (auto reply = runControl(state.database, controls, what, request)) {
    transaction.commit();
    return std::move(*reply);
  }
  for (const Route& route : kRoutes) {
    if (route.what != what || route.method != request.method) continue;
    if (what == "items" && classOf(state, request) == nullptr)
      return adminError(404, "the query names no folder of contacts, events or mails (folder)");
    HttpReply reply = route.run(state, request);
    transaction.commit();
    return reply;
  }
  return adminError(404, "there is no such page; see --help");
} catch (const json::exception& problem) {
  return adminError(400, problem.what());
} catch (const BadRequest& problem) {
  return adminError(400, problem.what());
} catch (const ItemError& problem) {
  return adminError(400, problem.what());
}

}  // namespace demoserver
