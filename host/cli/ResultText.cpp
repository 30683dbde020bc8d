#include "cli/ResultText.h"

#include <algorithm>
#include <fmt/core.h>
#include <iterator>
#include <string_view>

#include "transport/TransportError.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

struct Row {
  SYNC_RESULT result;
  std::string_view name;
  std::string_view sentence;
  std::string_view advice;
  ExitCode exitCode;
};

constexpr std::string_view kReport = "this is a defect of airsync: please report it with the output of -vv";
constexpr std::string_view kAgain = "run the command again later; nothing is lost";
constexpr std::string_view kServerSide =
    "run the command again; if it stays so, tell the server's administrator";
constexpr std::string_view kMoved =
    "nothing was sent there; ask the server's administrator for the right address and put it into `url`";
constexpr std::string_view kRefresh = "run airsync folders --refresh, and see whether it is still there";

constexpr Row kResults[] = {
    {AS_RESULT_OK, "AS_RESULT_OK", "it worked", "", ExitCode::kDone},
    {AS_RESULT_FOLDER_NOT_SELECTED, "AS_RESULT_FOLDER_NOT_SELECTED",
     "the folder is not selected for synchronisation", "remove `selected = false` from its configuration",
     ExitCode::kConfiguration},
    {AS_RESULT_INVALID_ARGUMENT, "AS_RESULT_INVALID_ARGUMENT",
     "the request could not be put together from what it was given", kReport, ExitCode::kInternal},
    {AS_RESULT_NO_REQUEST, "AS_RESULT_NO_REQUEST", "no request could be built", kReport, ExitCode::kInternal},
    {AS_RESULT_MALFORMED_DOCUMENT, "AS_RESULT_MALFORMED_DOCUMENT",
     "the server's answer breaks the rules of its encoding, or holds an element that has no place there",
     kServerSide, ExitCode::kServer},
    {AS_RESULT_TRANSPORT_FAILED, "AS_RESULT_TRANSPORT_FAILED",
     "the connection failed before the answer was complete", kAgain, ExitCode::kNetwork},
    {AS_RESULT_OUT_OF_MEMORY, "AS_RESULT_OUT_OF_MEMORY", "there is not enough memory for the server's answer",
     "free some memory and run the command again", ExitCode::kInternal},
    {AS_RESULT_REQUEST_TOO_LARGE, "AS_RESULT_REQUEST_TOO_LARGE",
     "the change is too large for any request (about 9,400 bytes)",
     "shorten the item (its Body, most likely) and sync again, or discard the change", ExitCode::kPartlyDone},
    {AS_RESULT_BAD_SERVER_ADDRESS, "AS_RESULT_BAD_SERVER_ADDRESS", "the server's address can't be understood",
     "correct `url` in the configuration", ExitCode::kConfiguration},
    {AS_RESULT_CANCELLED, "AS_RESULT_CANCELLED", "the run was interrupted", kAgain, ExitCode::kInterrupted},
    {AS_RESULT_WRONG_COLLECTION, "AS_RESULT_WRONG_COLLECTION",
     "the server answered about another folder, or about another kind of items", kServerSide,
     ExitCode::kServer},
    {AS_RESULT_HTTP_UNAUTHORIZED, "AS_RESULT_HTTP_UNAUTHORIZED",
     "the server refused the user name or the password (HTTP 401)",
     "check `user`, `domain` and where the password comes from", ExitCode::kLoginRefused},
    {AS_RESULT_HTTP_BAD_REQUEST, "AS_RESULT_HTTP_BAD_REQUEST",
     "the server did not understand the request (HTTP 400)", "check that `url` names the right service",
     ExitCode::kServer},
    {AS_RESULT_HTTP_SERVER_ERROR, "AS_RESULT_HTTP_SERVER_ERROR", "the server failed (HTTP 500)", kServerSide,
     ExitCode::kServer},
};

constexpr unsigned bit(Asked asked) { return 1U << static_cast<unsigned>(asked); }

constexpr unsigned kAnything = ~0U;
constexpr unsigned kPlaces = bit(Asked::newFolder) | bit(Asked::changedFolder);
constexpr unsigned kThere = bit(Asked::changedFolder) | bit(Asked::deletedFolder);
constexpr unsigned kNotTheList = kPlaces | kThere;

// AS_RESULT_INVALID_ARGUMENT of an answer about a folder.
constexpr Row kBadTimezone = {AS_RESULT_INVALID_ARGUMENT, "AS_RESULT_INVALID_ARGUMENT",
                              "an event in the server's answer has a time zone that can't be decoded",
                              "correct the event's time zone with another program, or tell the server's "
                              "administrator; nothing of this answer was taken",
                              ExitCode::kServer};

struct StatusRow {
  SYNC_RESULT status;
  std::string_view sentence;
  std::string_view advice;
  ExitCode exitCode;
  unsigned askedBy = kAnything;  // the commands whose answer it words
};

// A status that a family has no row for gets the family's own sentence, or the command's, {} standing for the
// status.
struct Family {
  SYNC_RESULT base;
  std::string_view name;
  std::string_view sentence;
  std::string_view advice;
  ExitCode exitCode;
  const StatusRow* begin;
  const StatusRow* end;
};

constexpr StatusRow kHttpStatuses[] = {
    // The transport fails before there is a status, or refuses what the head announces.
    {0, "the connection failed before an answer came", kAgain, ExitCode::kNetwork},
    {200, "the server's answer is framed in a way that can't be read (HTTP 200)", kServerSide,
     ExitCode::kServer},
    {301, "the server has moved (HTTP 301)", kMoved, ExitCode::kServer},
    {302, "the server sends us elsewhere (HTTP 302)", kMoved, ExitCode::kServer},
    {303, "the server sends us elsewhere (HTTP 303)", kMoved, ExitCode::kServer},
    {307, "the server sends us elsewhere (HTTP 307)", kMoved, ExitCode::kServer},
    {308, "the server has moved (HTTP 308)", kMoved, ExitCode::kServer},
    {403, "the server does not let this account or this device in (HTTP 403)",
     "ask the server's administrator to allow synchronisation for the account and the device id",
     ExitCode::kNeedsPerson},
    {404, "there is nothing at this address (HTTP 404)", "check the path in `url`", ExitCode::kServer},
    {405, "the address does not take commands (HTTP 405)", "check the path in `url`", ExitCode::kServer},
    {407, "a proxy on the way wants a login (HTTP 407)", "airsync knows no proxies: connect without one",
     ExitCode::kNeedsPerson},
    {413, "the server finds the request too large (HTTP 413)", kServerSide, ExitCode::kServer},
    {429, "the server gets too many requests (HTTP 429)", "wait a while, then run the command again",
     ExitCode::kServer},
    {449, "the server wants the device to accept its security policy first (HTTP 449)",
     "airsync can't do that: ask the server's administrator to exempt the device id", ExitCode::kNeedsPerson},
    {451, "the server wants to be asked at another address (HTTP 451)", kMoved, ExitCode::kServer},
    {501, "the server does not know this command or protocol version (HTTP 501)",
     "check that the server still accepts protocol version 2.0", ExitCode::kServer},
    {502, "a gateway before the server got no proper answer (HTTP 502)", kAgain, ExitCode::kServer},
    {503, "the server is overloaded or under maintenance (HTTP 503)", kAgain, ExitCode::kServer},
    {504, "a gateway before the server waited too long for it (HTTP 504)", kAgain, ExitCode::kServer},
    {507, "the mailbox on the server is full (HTTP 507)", "make room there, then run the command again",
     ExitCode::kNeedsPerson},
};

constexpr StatusRow kSyncStatuses[] = {
    {3, "the server does not know the folder's sync key (status 3)",
     "run airsync sync again: the folder begins anew", ExitCode::kServer},
};

constexpr StatusRow kFolderStatuses[] = {
    {2, "a folder of that name is there already (status 2)",
     "choose another name, or run airsync folders --refresh to see it", ExitCode::kNeedsPerson, kPlaces},
    {3, "the server keeps this folder as it is: it is one of its own (status 3)",
     "make folders of your own, which can be renamed and deleted", ExitCode::kNeedsPerson, kThere},
    {4, "the server has no such folder (status 4)", kRefresh, ExitCode::kNeedsPerson, kThere},
    {5, "the folder above can't take it: it is not there, or is the folder itself or below it (status 5)",
     "choose another --parent; airsync hierarchy shows what the server has", ExitCode::kNeedsPerson, kPlaces},
    {6, "the server failed at it (status 6)", kServerSide, ExitCode::kServer},
    {7, "the server does not allow it (status 7)", "ask the server's administrator for the permission",
     ExitCode::kNeedsPerson},
    {8, "the server took too long for it (status 8)", kAgain, ExitCode::kServer},
    {9, "the server does not know the key of the list of folders (status 9)",
     "run airsync folders --refresh, then the command again", ExitCode::kServer, kNotTheList},
    {10, "the server can't make sense of the folder: its name, or its type (status 10)",
     "choose another name or type", ExitCode::kNeedsPerson, kPlaces},
    {11, "the server failed at it, and does not say why (status 11)", kServerSide, ExitCode::kServer},
};

constexpr StatusRow kEstimateStatuses[] = {
    {2, "the server has no such folder, or one for items of another kind (status 2)", kRefresh,
     ExitCode::kServer},
    {3, "the folder was never synchronised, so that all of it waits (status 3)", "run airsync sync",
     ExitCode::kNeedsPerson},
    {4, "the server does not know the folder's sync key (status 4)",
     "run airsync sync: the folder begins anew", ExitCode::kServer},
};

constexpr StatusRow kMeetingStatuses[] = {
    {2, "the server finds no such meeting request (status 2)",
     "run airsync sync; somebody may have answered it elsewhere, or deleted it", ExitCode::kNeedsPerson},
    {3, "the mailbox can't take the meeting (status 3)", kServerSide, ExitCode::kServer},
    {4, "the server can't make a calendar item of the request (status 4)",
     "answer it with another program, or by airsync reply", ExitCode::kServer},
};

constexpr unsigned kSetUp = ~bit(Asked::carriers);
constexpr StatusRow kNotifyStatuses[] = {
    {2, "the server can't use the address or the name of the device (status 2)",
     "correct ADDRESS or --name: an e-mail address, or a number with --carrier", ExitCode::kNeedsPerson,
     kSetUp},
    {3, "the server does not know the carrier (status 3)",
     "choose --carrier from the list of airsync notify carriers", ExitCode::kNeedsPerson, kSetUp},
    {4, "the server can't use the lifetime (status 4)", "choose another --lifetime", ExitCode::kNeedsPerson,
     kSetUp},
    {5, "the server has no such folder (status 5)", kRefresh, ExitCode::kNeedsPerson, kSetUp},
};

constexpr StatusRow kFetchStatuses[] = {
    {4, "the server found the request malformed (status 4)", kServerSide, ExitCode::kServer},
    {5, "the server failed while it read the item (status 5)", kServerSide, ExitCode::kServer},
    {6, "the server could not convert the item (status 6)", kServerSide, ExitCode::kServer},
    {8, "the server does not have it any more (status 8)",
     "run airsync sync: what was deleted there goes here, too", ExitCode::kServer},
};

// Success is 3 here, and 0 stands for an item of which the server said nothing.
constexpr StatusRow kMoveStatuses[] = {
    {0, "the server said nothing of it", "run airsync sync, then see where it is", ExitCode::kServer},
    {1, "the server does not find it in its folder (status 1)", "run airsync sync, then see where it is",
     ExitCode::kServer},
    {2, "the server can't put it into that folder: it is not there, or is for other things (status 2)",
     "run airsync folders --refresh, and choose another --to", ExitCode::kNeedsPerson},
    {3, "it was moved", "", ExitCode::kDone},
    {4, "it is in that folder already (status 4)", "run airsync sync to see it there",
     ExitCode::kNeedsPerson},
    {5, "the server failed at it (status 5)", kServerSide, ExitCode::kServer},
    {6, "the server failed at it (status 6)", kServerSide, ExitCode::kServer},
    {7, "somebody else works on it at the moment (status 7)", kAgain, ExitCode::kServer},
};

constexpr Family kFamilies[] = {
    {AS_RESULT_FAMILY_HTTP, "AS_RESULT_FAMILY_HTTP", "the server answered with HTTP status {}", kServerSide,
     ExitCode::kServer, std::begin(kHttpStatuses), std::end(kHttpStatuses)},
    {AS_RESULT_FAMILY_SYNC, "AS_RESULT_FAMILY_SYNC",
     "the server refused to synchronise the folder (status {})", kServerSide, ExitCode::kServer,
     std::begin(kSyncStatuses), std::end(kSyncStatuses)},
    {AS_RESULT_FAMILY_NOTIFY, "AS_RESULT_FAMILY_NOTIFY", "the server refused the notification (status {})",
     kServerSide, ExitCode::kServer, std::begin(kNotifyStatuses), std::end(kNotifyStatuses)},
    {AS_RESULT_FAMILY_MEETING, "AS_RESULT_FAMILY_MEETING",
     "the server refused the answer to the meeting (status {})", kServerSide, ExitCode::kServer,
     std::begin(kMeetingStatuses), std::end(kMeetingStatuses)},
    {AS_RESULT_FAMILY_ESTIMATE, "AS_RESULT_FAMILY_ESTIMATE",
     "the server refused to say how much is waiting (status {})", kServerSide, ExitCode::kServer,
     std::begin(kEstimateStatuses), std::end(kEstimateStatuses)},
    {AS_RESULT_FAMILY_FOLDER, "AS_RESULT_FAMILY_FOLDER", "the server refused the folder command (status {})",
     kServerSide, ExitCode::kServer, std::begin(kFolderStatuses), std::end(kFolderStatuses)},
};

constexpr Family kItemFamily = {AS_RESULT_FAMILY_ITEM,
                                "AS_RESULT_FAMILY_ITEM",
                                "the server refused the change (status {})",
                                "retry the change, or discard it and keep the server's version",
                                ExitCode::kPartlyDone,
                                nullptr,
                                nullptr};

constexpr Family kFetchFamily = {0,
                                 "fetch",
                                 "the server refused to give the item (status {})",
                                 kServerSide,
                                 ExitCode::kServer,
                                 std::begin(kFetchStatuses),
                                 std::end(kFetchStatuses)};

constexpr Family kMoveFamily = {0,
                                "move",
                                "the server refused to move it (status {})",
                                kServerSide,
                                ExitCode::kServer,
                                std::begin(kMoveStatuses),
                                std::end(kMoveStatuses)};

// What a command's answer is about, where that is not what its family's is about.
struct AskedRow {
  Asked asked;
  SYNC_RESULT family;
  std::string_view sentence;
};
constexpr AskedRow kAsked[] = {
    {Asked::folderList, AS_RESULT_FAMILY_FOLDER, "the server refused to list its folders (status {})"},
    {Asked::newFolder, AS_RESULT_FAMILY_FOLDER, "the server refused to make the folder (status {})"},
    {Asked::changedFolder, AS_RESULT_FAMILY_FOLDER, "the server refused to change the folder (status {})"},
    {Asked::deletedFolder, AS_RESULT_FAMILY_FOLDER, "the server refused to delete the folder (status {})"},
    {Asked::carriers, AS_RESULT_FAMILY_NOTIFY, "the server refused to list its carriers (status {})"},
};

std::string_view sentenceFor(const Family& family, Asked asked) {
  const AskedRow* row = std::find_if(std::begin(kAsked), std::end(kAsked), [&](const AskedRow& each) {
    return each.asked == asked && each.family == family.base;
  });
  return row == std::end(kAsked) ? family.sentence : row->sentence;
}

ResultText ofFamily(const Family& family, SYNC_RESULT status, Asked asked = Asked::other) {
  const std::string name = fmt::format("{} | {}", family.name, status);
  const StatusRow* row = std::find_if(family.begin, family.end, [&](const StatusRow& each) {
    return each.status == status && (asked == Asked::other || (each.askedBy & bit(asked)) != 0);
  });
  if (row != family.end) return {name, std::string(row->sentence), std::string(row->advice), row->exitCode};
  return {name, fmt::format(fmt::runtime(sentenceFor(family, asked)), status), std::string(family.advice),
          family.exitCode};
}

const Row* find(SYNC_RESULT result) {
  const Row* row = std::find_if(std::begin(kResults), std::end(kResults),
                                [result](const Row& r) { return r.result == result; });
  return row == std::end(kResults) ? nullptr : row;
}

ResultText ofRow(const Row& row) {
  return {std::string(row.name), std::string(row.sentence), std::string(row.advice), row.exitCode};
}

// The low bits that hold a status: 16 for HTTP, 8 for the protocol's own families.
SYNC_RESULT statusOf(const Family& family, SYNC_RESULT result) {
  return result & (family.base == AS_RESULT_FAMILY_HTTP ? 0xffffU : 0xffU);
}

// What the transport's Open returned. Its own lastError() tells the story better, where it is at hand.
ResultText ofTransport(TransportErrorKind kind) {
  TransportError error;
  error.kind = kind;
  return {fmt::format("kTransportResultFamily | {}", nameOf(kind)),
          fmt::format("the connection to the server failed ({})", nameOf(kind)), std::string(kAgain),
          exitCodeOf(error.errorClass())};
}

}  // namespace

ExitCode exitCodeOf(TransportErrorClass errorClass) {
  switch (errorClass) {
    case TransportErrorClass::kNone:
      return ExitCode::kDone;
    case TransportErrorClass::kConfiguration:
      return ExitCode::kConfiguration;
    case TransportErrorClass::kNetwork:
      return ExitCode::kNetwork;
    case TransportErrorClass::kTls:
      return ExitCode::kTls;
    case TransportErrorClass::kServer:
      return ExitCode::kServer;
    case TransportErrorClass::kLogin:
      return ExitCode::kLoginRefused;
    case TransportErrorClass::kCancelled:
      return ExitCode::kInterrupted;
    case TransportErrorClass::kInternal:
      return ExitCode::kInternal;
  }
  return ExitCode::kInternal;
}

ResultText describe(SYNC_RESULT result, Asked asked) {
  // The requests about folders are put together from what was checked: it is the answer that can't be used.
  if (result == AS_RESULT_INVALID_ARGUMENT && asked == Asked::folder) return ofRow(kBadTimezone);
  if (const Row* row = find(result)) return ofRow(*row);
  constexpr SYNC_RESULT kStatusBits = 0xffff;
  if (result >= kTransportResultFamily && result <= resultOf(TransportErrorKind::kInternal)) {
    return ofTransport(static_cast<TransportErrorKind>(result & kStatusBits));
  }
  for (const Family& family : kFamilies) {
    const SYNC_RESULT status = statusOf(family, result);
    if ((family.base | status) == result) return ofFamily(family, status, asked);
  }
  // A status is or-ed with its family, whatever the server sent; one that does not fit leaves only this.
  constexpr SYNC_RESULT kOfEachFamily = 0x80010000;
  if ((result & kOfEachFamily) == kOfEachFamily) {
    return {fmt::format("{:#010x}", result), "the server answered with a status that does not exist",
            std::string(kServerSide), ExitCode::kServer};
  }
  return {fmt::format("{:#010x}", result), fmt::format("the library ended with the code {:#010x}", result),
          std::string(kReport), ExitCode::kInternal};
}

ResultText describeItem(SYNC_RESULT result) {
  if (result == AS_RESULT_OK || result == AS_RESULT_REQUEST_TOO_LARGE) return ofRow(*find(result));
  const SYNC_RESULT status = result & 0xffffU;
  return ofFamily(kItemFamily, status);
}

ResultText describeFetch(int status) { return ofFamily(kFetchFamily, static_cast<SYNC_RESULT>(status)); }

ResultText describeMove(int status) { return ofFamily(kMoveFamily, static_cast<SYNC_RESULT>(status)); }

}  // namespace airsync
