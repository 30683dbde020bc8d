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

// What the processes of an account have told, and what became of them.
class Progress {
 public:
  explicit Progress(const Account& account) : account_(account) {}

  const std::vector<std::string>& tried() const { return tried_; }

  void listen(const ChildEnd& end) {
    whole_ = nullptr;
    for (const Json& message : end.messages) {
      if (message.contains(kPlan)) planned_ = message.at(kPlan).get<std::vector<std::string>>();
      if (message.contains(kFolder)) add(message.at(kFolder), message.at(kCode).get<int>());
      if (message.contains(kAccount)) whole_ = message.at(kAccount);
    }
  }

  // The folder that the process died over, if it was about one; the others may go on then.
  void mourn(const Death& death, const ExitError& error) {
    FolderReport last;
    last.folder.serverId = death.flight.folderId.get();
    last.folder.path = death.flight.folder.get();
    last.trouble = troubleOf(error);
    const bool over = std::find(tried_.begin(), tried_.end(), last.folder.serverId) != tried_.end();
    if (last.folder.serverId.empty() || over || death.signal == SIGKILL) {
      trouble_ = last.trouble;
    } else {
      add(reportJson(last), static_cast<int>(error.code()));
    }
  }

  bool canGoOn() const {
    return !trouble_ && std::any_of(planned_.begin(), planned_.end(), [this](const std::string& id) {
      return std::find(tried_.begin(), tried_.end(), id) == tried_.end();
    });
  }

  // After the last process died.
  AccountEnd endOfTheDead() const {
    const ExitCode code = trouble_ ? trouble_->code : combine(codes_);
    return {code, report(code, trouble_)};
  }

  // After the last process came to its own end. It told of its folders twice: one by one, and with those that
  // were skipped.
  AccountEnd end(ExitCode own, std::size_t triedBefore) const {
    if (!whole_.is_object()) return {own, report(own, std::nullopt)};
    std::vector<ExitCode> codes(codes_.begin(), codes_.begin() + static_cast<std::ptrdiff_t>(triedBefore));
    codes.push_back(own);
    const ExitCode code = whole_.at("error").is_null() ? combine(codes) : own;
    Json report = whole_;
    report["exit"] = exitJson(code);
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

  Json report(ExitCode code, const std::optional<Trouble>& trouble) const {
    return {{"account", account_.name},
            {"exit", exitJson(code)},
            {"error", troubleJson(trouble)},
            {"folders", folders_},
            {"failures", Json::array()}};
  }

  const Account& account_;
  std::vector<std::string> planned_;
  std::vector<std::string> tried_;
  std::vector<ExitCode> codes_;  // of the folders that were tried
  Json folders_ = Json::array();
  Json whole_;
  std::optional<Trouble> trouble_;
};

}  // namespace

AccountEnd runAccount(Output& output, const Account& account, const AccountWork& work) {
  Progress progress(account);
  while (true) {
    const std::vector<std::string> before = progress.tried();
    const ChildEnd end = runInChild(output, [&](Child& child) { return work(child, before); });
    progress.listen(end);
    if (!end.death) return progress.end(end.code, before.size());
    const ExitError error =
        obituaryOf(*end.death, {.account = account.name, .operation = "synchronising", .synchronises = true});
    output.error(error);
    progress.mourn(*end.death, error);
    if (!progress.canGoOn()) return progress.endOfTheDead();
  }
}

void reportPlan(const Child& child, const std::vector<FolderReport>& folders) {
  Json ids = Json::array();
  for (const FolderReport& folder : folders) {
    if (!folder.skipped) ids.push_back(folder.folder.serverId);
  }
  child.report({{kPlan, std::move(ids)}});
}

void reportFolder(const Child& child, const FolderReport& folder) {
  const ExitCode code = folder.trouble ? folder.trouble->code : ExitCode::kDone;
  child.report({{kFolder, reportJson(folder)}, {kCode, static_cast<int>(code)}});
}

void reportAccount(const Child& child, const Account& account, const AccountReport& report) {
  child.report({{kAccount, reportJson(account, report)}});
}

}  // namespace airsync
