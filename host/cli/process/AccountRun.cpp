#include "cli/process/AccountRun.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include "cli/process/Obituary.h"

namespace airsync {

namespace {

// The members of messages.
constexpr const char* kPlan = "plan";
constexpr const char* kFolder = "folder";
constexpr const char* kCode = "code";
constexpr const char* kAccount = "account";

constexpr const char* kListError = "folder_list_error";  // of an account's report
constexpr std::string_view kListCommand = "FolderSync";

// What the processes of an account have told, and what became of them.
class Progress {
 public:
  explicit Progress(const Account& account) : account_(account) {}

  LeaveOut leaveOut() const { return {tried_, listTrouble_.has_value()}; }

  void listen(const ChildEnd& end) {
    whole_ = nullptr;
    for (const Json& message : end.messages) {
      if (message.contains(kPlan)) planned_ = message.at(kPlan);
      if (message.contains(kFolder)) add(message.at(kFolder), message.at(kCode).get<int>());
      if (message.contains(kAccount)) whole_ = message.at(kAccount);
    }
  }

  // What the process died over: a folder, or the list of them; the others may go on then.
  void mourn(const Death& death, const ExitError& error) {
    FolderReport last;
    last.folder.serverId = death.flight.folderId.get();
    last.folder.path = death.flight.folder.get();
    last.trouble = troubleOf(error);
    const bool aboutAFolder = !last.folder.serverId.empty() && !wasTried(last.folder.serverId);
    const bool aboutTheList = last.folder.serverId.empty() && death.flight.command.get() == kListCommand;
    if (aboutAFolder) add(reportJson(last), static_cast<int>(error.code()));
    if (death.signal == SIGKILL) {
      trouble_ = last.trouble;
    } else if (aboutTheList && !listTrouble_) {
      listTrouble_ = last.trouble;
      planned_.clear();
    } else if (!aboutAFolder) {
      trouble_ = last.trouble;
    }
  }

  bool canGoOn() const {
    const bool planWaits = listTrouble_ && planned_.empty();  // the next process makes one
    return !trouble_ && (planWaits || !notReached().empty());
  }

  // After the last process died.
  AccountEnd endOfTheDead() const {
    const ExitCode code = trouble_ ? trouble_->code : combine(withTheList(codes_));
    return {code, report(code, trouble_)};
  }

  // After the last process came to its own end. It told of its folders twice: one by one, and with those that
  // were skipped.
  AccountEnd end(ExitCode own, std::size_t triedBefore) const {
    if (!whole_.is_object()) return {own, report(own, std::nullopt)};
    std::vector<ExitCode> codes(codes_.begin(), codes_.begin() + static_cast<std::ptrdiff_t>(triedBefore));
    const bool didNothing = own == ExitCode::kDone && whole_.at("folders").empty();
    if (!didNothing) codes.push_back(own);
    const ExitCode code = whole_.at("error").is_null() ? combine(withTheList(codes)) : own;
    Json report = whole_;
    report["exit"] = exitJson(code);
    if (listTrouble_) report[kListError] = troubleJson(listTrouble_);
    Json folders = Json::array();
    for (std::size_t index = 0; index < triedBefore; ++index) folders.push_back(folders_.at(index));
    for (const Json& folder : whole_.at("folders")) folders.push_back(folder);
    report["folders"] = std::move(folders);
    return {code, std::move(report)};
  }

 private:
  void add(const Json& folder, int code) {
    tried_.push_back(folder.at("id").get<std::string>());
    folders_.push_back(folder);
    codes_.push_back(static_cast<ExitCode>(code));
  }

  bool wasTried(const std::string& id) const {
    return std::find(tried_.begin(), tried_.end(), id) != tried_.end();
  }

  // Of those that the last process had planned.
  Json notReached() const {
    Json folders = Json::array();
    for (const Json& folder : planned_) {
      if (!wasTried(folder.at("id").get<std::string>())) folders.push_back(folder);
    }
    return folders;
  }

  std::vector<ExitCode> withTheList(std::vector<ExitCode> codes) const {
    if (listTrouble_) codes.push_back(listTrouble_->code);
    return codes;
  }

  Json report(ExitCode code, const std::optional<Trouble>& trouble) const {
    Json folders = folders_;
    for (const Json& folder : notReached()) folders.push_back(folder);
    return {{"account", account_.name},      {"exit", exitJson(code)},
            {"error", troubleJson(trouble)}, {kListError, troubleJson(listTrouble_)},
            {"folders", std::move(folders)}, {"failures", Json::array()}};
  }

  const Account& account_;
  Json planned_ = Json::array();  // as reports of folders that were not reached
  std::vector<std::string> tried_;
  std::vector<ExitCode> codes_;  // of the folders that were tried
  Json folders_ = Json::array();
  Json whole_;
  std::optional<Trouble> listTrouble_;
  std::optional<Trouble> trouble_;
};

}  // namespace

AccountEnd runAccount(Output& output, const Account& account, const AccountWork& work) {
  Progress progress(account);
  while (true) {
    const LeaveOut before = progress.leaveOut();
    const ChildEnd end = runInChild(output, [&](Child& child) { return work(child, before); });
    progress.listen(end);
    if (!end.death) return progress.end(end.code, before.folders.size());
    const ExitError error =
        obituaryOf(*end.death, {.account = account.name, .operation = "synchronising", .synchronises = true});
    output.error(error);
    progress.mourn(*end.death, error);
    if (!progress.canGoOn()) return progress.endOfTheDead();
  }
}

void reportPlan(const Child& child, const std::vector<FolderReport>& folders) {
  Json plan = Json::array();
  for (const FolderReport& folder : folders) {
    if (!folder.skipped) plan.push_back(reportJson(folder));
  }
  child.report({{kPlan, std::move(plan)}});
}

void reportFolder(const Child& child, const FolderReport& folder) {
  child.report({{kFolder, reportJson(folder)}, {kCode, static_cast<int>(folder.exitCode())}});
}

void reportAccount(const Child& child, const Account& account, const AccountReport& report) {
  child.report({{kAccount, reportJson(account, report)}});
}

}  // namespace airsync
