#include "Options.h"

#include <CLI/CLI.hpp>
#include <vector>

namespace demoserver {
namespace {

constexpr char kFooter[] = R"(
Prints "listening on ADDRESS:PORT" on standard output when it is ready. SIGTERM and SIGINT end it.
Requests: POST /any/path?Cmd=COMMAND&User=...&DeviceId=...&DeviceType=... with Basic authentication as DOMAIN/USER.
Commands: Sync, SendMail, SmartForward, SmartReply, GetAttachment, GetHierarchy, FolderSync, FolderCreate,
FolderDelete, FolderUpdate, MoveItems, GetItemEstimate, MeetingResponse, Notify; and OPTIONS.

Conflict option of a Sync: 0 the client's change is taken, 1 (default) the server's version stands (item status 7,
or 8 if the item is gone) and is sent. Truncation option: 0 no bodies, 1 to 7 bodies of up to 4096, 5120, 7168, 10240,
20480, 51200, 102400 bytes, otherwise whole bodies. FilterType option: mails of 1 day (1), 3 days (2), 1 week (3),
2 weeks (4), 1 month (5); events that ended less than 2 weeks (4), 1 month (5), 3 months (6), 6 months (7) ago.

Administration, with the same authentication (JSON; percent-encode ids in queries):
  GET    /admin/state                     counts, and the sync keys of every device
  GET    /admin/folders                   all folders with their numbers of items
  POST   /admin/folders                   {"parent", "name", "type"}
  PUT    /admin/folders?id=ID             {"parent", "name"}
  DELETE /admin/folders?id=ID
  GET    /admin/items?folder=ID[&id=ID]   contacts, events or mails
  POST   /admin/items?folder=ID           a record: {"FirstName": "...", "Categories": ["..."], ...}
  PUT    /admin/items?folder=ID&id=ID     replaces the record
  DELETE /admin/items?folder=ID&id=ID
  GET    /admin/message?folder=ID&id=ID   a mail as the message that was sent (or made of a reply or forward)
  GET    /admin/attachment?handle=HANDLE  the content of an attachment
  GET    /admin/habits                    which habits are on
  PUT    /admin/habits                    {"NAME": true or false, ...}; the others stay as they are
  GET    /admin/faults                    the plan of faults, and how many requests it has "picked"
  PUT    /admin/faults                    a new plan, which begins to count now: {"command", "after", "count",
                                          "status", "cutBody", "delayMs", "closeBeforeHandling",
                                          "closeBeforeAnswer", "closeAfterAnswer", "noCollection"}, each
                                          optional; {} ends all faults
  DELETE /admin/keys?folder=ID[&device=ID]  forgets the folder's keys ("hierarchy": those of the folder list)
)";

void addServing(CLI::App& app, Options& options) {
  app.add_option("--port", options.listener.port, "port to listen on; 0: any free one")
      ->capture_default_str();
  app.add_option("--address", options.listener.address, "loopback address to listen on")
      ->capture_default_str();
  app.add_option("--data", options.dataFile, "SQLite file that keeps the state; made when it is missing")
      ->required();
  app.add_option_function<std::string>(
      "--now",
      [&options](const std::string& text) {
        options.now = momentOf(text);
        if (!options.now)
          throw CLI::ValidationError("--now", text + " is not a time such as 2026-11-21T12:00:00Z");
      },
      "let the server's clock stand still at this moment (UTC, as 2026-11-21T12:00:00Z)");
  app.add_option("--domain", options.service.credentials.domain, "domain of the account")
      ->capture_default_str();
  app.add_option("--user", options.service.credentials.user, "user of the account")->capture_default_str();
  app.add_option("--mail-address", options.service.mailAddress,
                 "e-mail address of the account: messages sent to it arrive in its Inbox")
      ->capture_default_str();
  app.add_option("--password", options.service.credentials.password,
                 "password of the account (default: demo)");
  auto* certificate =
      app.add_option("--tls-cert", options.listener.certificateFile, "speak TLS with this certificate (PEM)")
          ->check(CLI::ExistingFile);
  app.add_option("--tls-key", options.listener.keyFile, "key of the certificate (PEM)")
      ->check(CLI::ExistingFile)
      ->needs(certificate);
  certificate->needs("--tls-key");
  app.add_flag("-v,--verbose", options.service.verbose, "tell every request on standard error");
}

void addSeeding(CLI::App& app, Options& options) {
  app.add_option("--contacts", options.seed.contacts, "contacts to make in a new data file")
      ->check(CLI::Range(0, 1'000'000))
      ->capture_default_str()
      ->group("New data file");
  app.add_option("--events", options.seed.events, "events to make in a new data file")
      ->check(CLI::Range(0, 1'000'000))
      ->capture_default_str()
      ->group("New data file");
  app.add_option("--mails", options.seed.mails, "mails to make in a new data file")
      ->check(CLI::Range(0, 1'000'000))
      ->capture_default_str()
      ->group("New data file");
  app.add_option("--folders", options.seed.folders, "user folders to make beyond the usual 19")
      ->check(CLI::Range(0, 10'000))
      ->capture_default_str()
      ->group("New data file");
  app.add_option("--seed", options.seed.seed, "the same seed makes the same data at the same time")
      ->capture_default_str()
      ->group("New data file");
}

void addFaults(CLI::App& app, Options& options) {
  FaultPlan& plan = options.service.faults;
  const auto positive = CLI::Range(0, 1'000'000'000);
  const auto option = [&](const char* name, auto& value, const char* help) {
    return app.add_option(name, value, help)->group("Faults, for the requests that are picked");
  };
  const auto flag = [&](const char* name, bool& value, const char* help) {
    return app.add_flag(name, value, help)->group("Faults, for the requests that are picked");
  };
  option("--fail-cmd", plan.command, "pick only this command");
  option("--fail-after", plan.after, "let so many such requests pass first")->check(positive);
  option("--fail-count", plan.count, "pick so many, then no more (default: all)")->check(positive);
  option("--fail-status", plan.fault.status, "answer this HTTP status, do nothing else")
      ->check(CLI::Range(200, 599));
  option("--cut-body", plan.fault.cutBody, "send so many bytes of the body, then close")->check(positive);
  option("--delay-ms", plan.fault.delayMs, "apply the request, wait, then answer")->check(positive);
  flag("--close-before-handling", plan.fault.dropRequest, "close without applying the request");
  flag("--close-before-answer", plan.fault.dropAnswer, "apply the request, then close without an answer");
  flag("--close-after-answer", plan.fault.closeAfter, "close unannounced after the answer");
  flag("--no-collection", plan.fault.noCollection, "answer a Sync without any Collection");
  option("--answer-file", plan.fault.answerFile, "answer with the bytes of this file, do nothing else")
      ->check(CLI::ExistingFile);
}

std::string listOfHabits() {
  std::string list;
  for (const Habit& habit : kHabits)
    list.append("  ").append(habit.name).append("\n      ").append(habit.sentence).append("\n");
  return list;
}

void takeHabits(Options& options, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    // The parser's way to print a text and end well, before it misses what is required.
    if (name == "list") throw CLI::CallForVersion(listOfHabits(), 0);
    if (!setHabit(options.service.habits, name, true))
      throw CLI::ValidationError("--habit", "there is no habit " + name + "; --habit list tells them all");
  }
}

void addBehaviour(CLI::App& app, Options& options) {
  const auto group = "Liberties that servers take, for all requests";
  app.add_option("--chunked", options.listener.chunkSize, "send bodies in chunks of so many bytes")
      ->check(CLI::Range(1, 1'000'000))
      ->group(group);
  app.add_option_function<std::vector<std::string>>(
         "--habit", [&options](const std::vector<std::string>& names) { takeHabits(options, names); },
         "a habit of other servers, by its name; \"list\" tells them all")
      ->allow_extra_args(false)
      ->type_name("NAME")
      ->group(group);
}

}  // namespace

std::optional<Options> parseOptions(int argc, char** argv, int& exitCode) {
  CLI::App app("A small AirSync server for demonstrations and tests, on loopback addresses only.",
               "airsync-demo-server");
  app.footer(kFooter + ("\nHabits (--habit NAME, repeatable; of those that contradict each other the last "
                        "one counts):\n" +
                        listOfHabits()));
  Options options;
  addServing(app, options);
  addSeeding(app, options);
  addFaults(app, options);
  addBehaviour(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    exitCode = app.exit(error) == 0 ? 0 : 1;
    return std::nullopt;
  }
  return options;
}

}  // namespace demoserver
