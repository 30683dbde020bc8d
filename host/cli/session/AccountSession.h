// A connection to one account's server, and what can be asked of it.
#ifndef AIRSYNC_CLI_SESSION_ACCOUNT_SESSION_H
#define AIRSYNC_CLI_SESSION_ACCOUNT_SESSION_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/ResultText.h"
#include "cli/config/Config.h"
#include "cli/config/Password.h"
#include "cli/process/FlightRecord.h"
#include "cli/session/Interrupt.h"
#include "cli/session/Library.h"
#include "cli/session/LogAppender.h"
#include "cli/session/Report.h"
#include "cli/session/SessionEvents.h"
#include "cli/session/StallGuard.h"
#include "cli/session/Watch.h"
#include "store/Store.h"
#include "transport/HttpTransport.h"

namespace airsync {

/// Drives the library for one account. The caller holds the account's RunLock. One exists at a time, and it
/// stays in its place. Errors are thrown as Error: of kind folder when the other folders may go on, of kind
/// account (or cancelled) when nothing more can be done with this account.
class AccountSession {
 public:
  AccountSession(const Account& account, const std::string& deviceId, const Password& password, Store& store,
                 SessionEvents events);

  /// Connects to the server.
  void connect();

  /// Brings the list of folders up to date. A key that the server refuses is forgotten, once. Throws Error:
  /// of kind folder when the folders that are known already may be worked on all the same.
  void refreshFolders();

  /// Synchronises one folder until neither side has anything more: receives first, and sends then. What
  /// became durable before a failure is in `report.outcome` all the same.
  void syncFolder(const FolderSettings& settings, const SyncRules& rules, FolderReport& report);

  /// Whether any of the last request may have reached the server.
  Reached lastReached() const;

  // --- For commands with a file of their own ---
  //
  //   session.beginCommand();
  //   session.require(session.airSync().GetCarrierList(list, count), "asking for the carriers of",
  //                   "account work", ErrorKind::account);

  AIRSYNC_STACK::AirSync& airSync() { return library_->airSync(); }

  /// Before each command of the library. Throws Error (cancelled) when somebody asked us to stop.
  void beginCommand();

  /// After it: throws the whole story of a result that is not AS_RESULT_OK, as an Error of kind `least`, or
  /// worse where nothing more can be done with the account.
  void require(AIRSYNC_STACK::SYNC_RESULT result, const std::string& operation, const std::string& subject,
               ErrorKind least, Asked asked = Asked::other) const;

  /// The transport's own account of the last command's failure.
  const TransportError& transportError() const { return transport_.lastError(); }

  /// What the last command's answer held beside what the library told.
  const AnswerWatch& answer() const { return watchedTransport_.answer(); }

  /// Whether the server may have got the last request, and whether it answered properly.
  RequestFate requestFate() const { return transport_.fate(); }

  /// What the server told of the length of an attachment, in the answer that brought it.
  std::optional<std::uint64_t> bodyLength() const { return transport_.lastBodyLength(); }

  /// A text of the server with "***" in the place of our login, in whatever form it may be said back.
  std::string withoutSecrets(const std::string& text) const;

  /// How many bytes an attachment had, after the command that downloaded it.
  std::uint64_t bodyBytes() const { return transport_.lastBodyBytes(); }

 private:
  AIRSYNC_STACK::SYNC_RESULT syncHierarchy(HierarchyFetch fetch);

  // One folder's synchronisation, while it runs.
  struct FolderWork {
    const FolderSettings& settings;
    const SyncRules& rules;
    FolderReport& report;
    bool received = false;  // see Store::nextStep
    int culprits = 0;       // changes in a row that the server answered with an error
  };
  std::size_t waitingIn(FolderNumber folder) const;
  bool takeStep(FolderWork& work, SyncStep step);
  void afterFailure(FolderWork& work, SyncStep step, AIRSYNC_STACK::SYNC_RESULT result);
  bool blameChanges(FolderWork& work, AIRSYNC_STACK::SYNC_RESULT result);
  void lookAnew(FolderWork& work);
  void beginAnew(FolderReport& report, AIRSYNC_STACK::SYNC_RESULT result);
  void checkDeletions(const FolderReport& report) const;
  [[noreturn]] void refuseDeletions(const FolderReport& report) const;
  std::string wordsOf(AIRSYNC_STACK::SYNC_RESULT result) const;
  void setAside(FolderReport& report, AIRSYNC_STACK::SYNC_RESULT result);
  bool isEmptyAnswer(AIRSYNC_STACK::SYNC_RESULT result);
  [[noreturn]] void fail(AIRSYNC_STACK::SYNC_RESULT result, const std::string& operation,
                         const std::string& subject, ErrorKind least, Asked asked = Asked::other) const;
  void tellOfStatus(const TransportError& transport, ErrorStory& story) const;
  [[noreturn]] void failFolder(const FolderReport& report, AIRSYNC_STACK::SYNC_RESULT result) const;
  std::string subjectOf(const FolderReport& report) const;
  void checkInterrupt() const;

  const Account& account_;
  Store& store_;
  SessionEvents events_;
  FlightRecord ownFlight_;
  FlightRecord& flight_;
  StallGuard guard_;
  std::string currentFolder_;
  std::size_t items_ = 0;
  std::vector<std::string> secrets_;
  HttpTransport transport_;
  WatchedTransport watchedTransport_;
  WatchedStorage watchedStorage_;
  std::optional<LogAppender> appender_;
  std::optional<LogRegistration> registration_;
  std::unique_ptr<Library> library_;
  std::optional<Interrupt::Scope> interruptScope_;
};

}  // namespace airsync

#endif
