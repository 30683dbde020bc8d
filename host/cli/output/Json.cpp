#include "cli/output/Json.h"

#include "cli/output/Words.h"
#include "formats/ItemJson.h"
#include "store/FolderTypes.h"

namespace airsync {

namespace {

Json orNull(const std::optional<std::string>& text) { return text ? Json(*text) : Json(nullptr); }

Json orNull(const std::optional<UtcTime>& time) { return time ? Json(time->text()) : Json(nullptr); }

// What a list tells of an item, class by class.
struct Details {
  Json operator()(const ContactSummary& contact) const {
    return {{"name", contact.name}, {"email", contact.email}, {"phone", contact.phone}};
  }
  Json operator()(const EventSummary& event) const {
    return {{"subject", event.subject}, {"location", event.location}, {"start", orNull(event.start)},
            {"end", orNull(event.end)}, {"all_day", event.allDay},    {"recurring", event.recurring}};
  }
  Json operator()(const MailSummary& mail) const {
    return {{"from", mail.from},
            {"subject", mail.subject},
            {"received", orNull(mail.received)},
            {"read", mail.read},
            {"attachments", mail.attachments},
            {"truncated", mail.truncated},
            {"meeting_request", mail.isMeetingRequest}};
  }
};

const char* resultOf(const FolderReport& report) {
  if (report.skipped) return "skipped";
  if (report.trouble) return "failed";
  return report.tried ? "done" : "not reached";
}

}  // namespace

Json outcomeJson(const SyncOutcome& outcome) {
  return {{"added", outcome.added},
          {"changed", outcome.changed},
          {"deleted", outcome.deleted},
          {"sent", outcome.sent},
          {"sent_deletions", outcome.sentDeletions},
          {"refused", outcome.refused},
          {"overwritten", outcome.overwritten},
          {"ignored", outcome.ignored}};
}

Json conflictJson(const Conflict& conflict) {
  return {{"outcome", nameOf(conflict.outcome)},
          {"number", conflict.item},
          {"copy", conflict.copy == 0 ? Json(nullptr) : Json(conflict.copy)},
          {"name", conflict.name}};
}

Json troubleJson(const std::optional<Trouble>& trouble) {
  if (!trouble) return nullptr;
  return {{"exit", exitJson(trouble->code)}, {"message", trouble->message}, {"advice", trouble->advice}};
}

Json exitJson(ExitCode code) { return {{"code", static_cast<int>(code)}, {"name", describe(code).name}}; }

Json folderJson(const Account& account, const Folder& folder) {
  return {{"id", folder.serverId},
          {"parent", folder.parentId},
          {"name", folder.name},
          {"path", folder.path},
          {"type", folder.type},
          {"type_name", folderType(folder.type).name},
          {"class", folder.dataType ? Json(nameOf(*folder.dataType)) : Json(nullptr)},
          {"state", stateOf(account, folder)},
          {"sync_key", folder.syncKey},
          {"items", folder.items},
          {"pending", folder.pending},
          {"failed", folder.failed},
          {"last_sync", orNull(folder.lastSync)}};
}

Json pendingJson(const std::optional<PendingChange>& pending) {
  if (!pending) return nullptr;
  return {{"kind", nameOf(pending->kind)},
          {"state", nameOf(pending->state)},
          {"status", pending->status},
          {"reason", reasonOf(*pending)}};
}

Json summaryJson(const ItemSummary& summary) {
  Json json = {{"number", summary.number}, {"id", orNull(summary.serverId)}};
  json.update(std::visit(Details{}, summary.details));
  json["pending"] = pendingJson(summary.pending);
  return json;
}

Json itemJson(const StoredItem& item) {
  return {{"number", item.number},
          {"id", orNull(item.serverId)},
          {"pending", pendingJson(item.pending)},
          {"record", itemToJson(item.value)}};
}

Json failureJson(const Failure& failure) {
  return {{"folder", failure.folderName},
          {"number", failure.item},
          {"id", orNull(failure.serverId)},
          {"name", failure.name},
          {"copy_of", failure.copyOf ? Json(*failure.copyOf) : Json(nullptr)},
          {"change", pendingJson(failure.change)},
          {"since", orNull(failure.since)}};
}

Json reportJson(const FolderReport& report) {
  const char* result = resultOf(report);
  Json json = {{"id", report.folder.serverId}, {"path", report.folder.path}, {"result", result}};
  if (report.skipped) {
    json["why"] = report.whySkipped;
    return json;
  }
  if (!report.tried && !report.trouble) return json;
  json["begun_anew"] = report.begunAnew;
  json["changes"] = outcomeJson(report.outcome);
  json["not_taken"] = report.notTaken;
  json["conflicts"] = Json::array();
  for (const Conflict& conflict : report.outcome.conflicts)
    json["conflicts"].push_back(conflictJson(conflict));
  json["error"] = troubleJson(report.trouble);
  return json;
}

Json reportJson(const Account& account, const AccountReport& report) {
  Json json = {{"account", account.name}, {"exit", exitJson(report.exitCode())}};
  json["error"] = troubleJson(report.trouble);
  json["folder_list_error"] = troubleJson(report.listTrouble);
  json["folders"] = Json::array();
  for (const FolderReport& folder : report.folders) json["folders"].push_back(reportJson(folder));
  json["failures"] = Json::array();
  for (const Failure& failure : report.failures) json["failures"].push_back(failureJson(failure));
  return json;
}

}  // namespace airsync
