#include "cli/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/cli/Support.h"

namespace airsync {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Options parse(const std::vector<std::string>& arguments) { return parseOptions(arguments).options; }

std::string error(const std::vector<std::string>& arguments) {
  return test::errorOf([&] { parseOptions(arguments); });
}

TEST(Options, KnowEveryCommandWithItsArguments) {
  EXPECT_EQ(parse({"folders"}).command, Command::folders);
  EXPECT_FALSE(parse({"folders"}).refresh);
  EXPECT_TRUE(parse({"folders", "--refresh"}).refresh);
  EXPECT_EQ(parse({"status"}).command, Command::status);
  EXPECT_EQ(parse({"sync"}).command, Command::sync);
  EXPECT_THAT(parse({"sync"}).folders, IsEmpty());
  EXPECT_THAT(parse({"sync", "Contacts", "f2"}).folders, ElementsAre("Contacts", "f2"));
  EXPECT_EQ(parse({"list", "Contacts"}).command, Command::list);
  EXPECT_EQ(parse({"list", "Contacts"}).folder, "Contacts");
  const Options show = parse({"show", "Contacts", "12"});
  EXPECT_EQ(show.command, Command::show);
  EXPECT_EQ(show.folder, "Contacts");
  EXPECT_EQ(show.item, "12");
  const Options add = parse({"add", "Contacts", "-"});
  EXPECT_EQ(add.command, Command::add);
  EXPECT_EQ(add.folder, "Contacts");
  EXPECT_EQ(add.record, "-");
  const Options change = parse({"change", "Contacts", "12", "ann.json"});
  EXPECT_EQ(change.command, Command::change);
  EXPECT_EQ(change.item, "12");
  EXPECT_EQ(change.record, "ann.json");
  EXPECT_EQ(parse({"delete", "Contacts", "12"}).command, Command::remove);
  EXPECT_EQ(parse({"retry", "Contacts", "12"}).command, Command::retry);
  EXPECT_EQ(parse({"discard", "Contacts", "12"}).command, Command::discard);
}

TEST(Options, KnowTheCommandsForMails) {
  const Options fetch = parse({"fetch", "Inbox", "12"});
  EXPECT_EQ(fetch.command, Command::fetch);
  EXPECT_EQ(fetch.item, "12");
  const Options read = parse({"mark", "Inbox", "12", "--read"});
  EXPECT_EQ(read.command, Command::mark);
  EXPECT_TRUE(read.read);
  EXPECT_FALSE(parse({"mark", "Inbox", "--unread", "12"}).read);
  const Options only = parse({"attachment", "Inbox", "12"});
  EXPECT_EQ(only.command, Command::attachment);
  EXPECT_FALSE(only.attachment.has_value());
  EXPECT_EQ(only.output, "");
  EXPECT_FALSE(only.force);
  const Options second = parse({"attachment", "Inbox", "12", "2", "-o", "plan.pdf", "--force"});
  EXPECT_EQ(second.attachment, 2);
  EXPECT_EQ(second.output, "plan.pdf");
  EXPECT_TRUE(second.force);
  EXPECT_EQ(parse({"attachment", "Inbox", "12", "-o", "-"}).output, "-");
  EXPECT_EQ(parse({"attachment", "Inbox", "12", "--output", "x"}).output, "x");
}

TEST(Options, MarkAMailInOneWay) {
  EXPECT_THAT(error({"mark", "Inbox", "12"}), testing::StartsWith("1 "));
  EXPECT_THAT(error({"mark", "Inbox", "12", "--read", "--unread"}), testing::StartsWith("1 "));
}

TEST(Options, KnowTheCommandsThatAskTheServerAtOnce) {
  EXPECT_EQ(parse({"options"}).command, Command::options);
  EXPECT_EQ(parse({"hierarchy"}).command, Command::hierarchy);
  EXPECT_EQ(parse({"estimate"}).command, Command::estimate);
  EXPECT_THAT(parse({"estimate", "Inbox", "f9"}).folders, ElementsAre("Inbox", "f9"));
  const Options move = parse({"move", "Inbox", "1", "5:2", "--to", "Done"});
  EXPECT_EQ(move.command, Command::move);
  EXPECT_EQ(move.folder, "Inbox");
  EXPECT_THAT(move.items, ElementsAre("1", "5:2"));
  EXPECT_EQ(move.to, "Done");
  const Options respond = parse({"respond", "Inbox", "3", "tentative"});
  EXPECT_EQ(respond.command, Command::respond);
  EXPECT_EQ(respond.answer, "tentative");
}

TEST(Options, KnowTheCommandsAboutFolders) {
  const Options create = parse({"folder", "create", "Letters"});
  EXPECT_EQ(create.command, Command::folderCreate);
  EXPECT_EQ(create.name, "Letters");
  EXPECT_EQ(create.type, "mail");
  EXPECT_FALSE(create.parent);
  EXPECT_EQ(parse({"folder", "create", "delete", "--type", "contacts"}).name, "delete");
  const Options rename = parse({"folder", "rename", "Letters", "Post", "--parent", "/", "--json"});
  EXPECT_EQ(rename.command, Command::folderRename);
  EXPECT_EQ(rename.folder, "Letters");
  EXPECT_EQ(rename.name, "Post");
  EXPECT_EQ(rename.parent, "/");
  EXPECT_TRUE(rename.json);
  EXPECT_FALSE(parse({"folder", "delete", "Post"}).force);
  EXPECT_TRUE(parse({"folder", "delete", "Post", "--force"}).force);
  EXPECT_EQ(parse({"folder", "delete", "Post"}).command, Command::folderDelete);
  EXPECT_THAT(error({"folder"}), testing::StartsWith("1 "));
  EXPECT_THAT(error({"folder", "create", "x", "--type", "tasks"}), testing::StartsWith("1 "));
}

TEST(Options, KnowTheCommandsThatSendMessages) {
  const Options send = parse({"send", "-"});
  EXPECT_EQ(send.command, Command::send);
  EXPECT_EQ(send.message, "-");
  EXPECT_FALSE(send.noCopy);
  EXPECT_TRUE(parse({"send", "letter.eml", "--no-copy"}).noCopy);
  const Options reply = parse({"reply", "Inbox", "3", "letter.eml"});
  EXPECT_EQ(reply.command, Command::reply);
  EXPECT_EQ(reply.item, "3");
  EXPECT_EQ(reply.message, "letter.eml");
  EXPECT_EQ(parse({"forward", "Inbox", "3", "-"}).command, Command::forward);
}

TEST(Options, KnowTheCommandsAboutNotifications) {
  const Options enable = parse(
      {"notify", "enable", "+49151", "--carrier", "c", "--name", "n", "--lifetime", "60", "Inbox", "f9"});
  EXPECT_EQ(enable.command, Command::notifyEnable);
  EXPECT_EQ(enable.notify.address, "+49151");
  EXPECT_EQ(enable.notify.carrier, "c");
  EXPECT_EQ(enable.notify.name, "n");
  EXPECT_EQ(enable.notify.lifetime, 60U);
  EXPECT_THAT(enable.folders, ElementsAre("Inbox", "f9"));
  EXPECT_EQ(parse({"notify", "enable", "a@b"}).notify.lifetime, 86'400U);
  EXPECT_EQ(parse({"notify", "disable"}).command, Command::notifyDisable);
  EXPECT_EQ(parse({"notify", "carriers"}).command, Command::notifyCarriers);
  EXPECT_EQ(parse({"notify", "address", "+49151"}).command, Command::notifyAddress);
  const Options check = parse({"notify", "check", "{0}", "-"});
  EXPECT_EQ(check.command, Command::notifyCheck);
  EXPECT_EQ(check.notify.guid, "{0}");
  EXPECT_EQ(check.notify.payload, "-");
  for (const char* lifetime : {"0", "-1", "2147483648", "soon"}) {
    EXPECT_THAT(error({"notify", "enable", "a@b", "--lifetime", lifetime}), testing::StartsWith("1 "));
  }
}

TEST(Options, RefuseWhatACommandCantUse) {
  EXPECT_THAT(error({"move", "Inbox", "1"}), testing::StartsWith("1 "));
  EXPECT_THAT(error({"move", "Inbox", "--to", "Done"}), testing::StartsWith("1 "));
  EXPECT_THAT(error({"respond", "Inbox", "1", "perhaps"}), testing::StartsWith("1 "));
  EXPECT_THAT(error({"respond", "Inbox", "1"}), testing::StartsWith("1 "));
  EXPECT_THAT(error({"reply", "Inbox", "1"}), testing::StartsWith("1 "));
  EXPECT_THAT(error({"notify", "check", "{0}"}), testing::StartsWith("1 "));
}

TEST(Options, ForAllCommandsMayStandBeforeAndAfterTheCommand) {
  for (const Options& options : {parse({"--json", "--config", "c", "--account", "a", "-vv", "status"}),
                                 parse({"status", "--json", "--config", "c", "--account", "a", "-vv"})}) {
    EXPECT_TRUE(options.json);
    EXPECT_FALSE(options.quiet);
    EXPECT_EQ(options.configFile, "c");
    EXPECT_EQ(options.account, "a");
    EXPECT_EQ(options.verbosity, 2);
  }
  EXPECT_TRUE(parse({"-q", "status"}).quiet);
}

TEST(Options, TakeAFolderThatLooksLikeAnOptionAfterTwoDashes) {
  EXPECT_EQ(parse({"list", "--", "-old-"}).folder, "-old-");
}

TEST(Options, WithoutACommandOrWithAnUnknownOneAreAUsageError) {
  EXPECT_THAT(error({}), testing::StartsWith("1 "));
  EXPECT_EQ(error({"synchronise"}), "1 there is no command \"synchronise\"");
  EXPECT_EQ(error({"--colour"}), "1 there is no option --colour");
  EXPECT_EQ(error({""}), "1 there is no command \"\"");
}

TEST(Options, WithArgumentsThatNobodyExpectsAreAUsageError) {
  EXPECT_EQ(error({"status", "--colour"}), "1 there is no option --colour");
  EXPECT_EQ(error({"status", "now"}), "1 \"now\" is one argument too many");
  EXPECT_EQ(error({"status", "a\nb"}), "1 \"a\\x0ab\" is one argument too many");
}

TEST(Options, TakeFoldersThatAreCalledLikeCommands) {
  const Options options = parse({"sync", "status", "list"});
  EXPECT_EQ(options.command, Command::sync);
  EXPECT_THAT(options.folders, ElementsAre("status", "list"));
}

TEST(Options, WithoutAnArgumentThatTheCommandNeedsAreAUsageError) {
  EXPECT_THAT(error({"list"}), testing::AllOf(testing::StartsWith("1 "), HasSubstr("FOLDER")));
  EXPECT_THAT(error({"show", "Contacts"}), testing::AllOf(testing::StartsWith("1 "), HasSubstr("ID")));
  EXPECT_THAT(error({"add", "Contacts"}), testing::AllOf(testing::StartsWith("1 "), HasSubstr("RECORD")));
  EXPECT_THAT(error({"change", "Contacts", "1"}),
              testing::AllOf(testing::StartsWith("1 "), HasSubstr("RECORD")));
  EXPECT_THAT(error({"delete", "Contacts"}), testing::AllOf(testing::StartsWith("1 "), HasSubstr("ID")));
}

TEST(Options, QuietAndVerboseExcludeEachOther) {
  EXPECT_EQ(error({"-q", "-v", "status"}), "1 -q and -v exclude each other");
}

// Keeps S12.
TEST(Options, HaveNoPlaceForAPasswordAndDoNotRepeatIt) {
  EXPECT_EQ(error({"sync", "--password", "x"}), "1 there is no option --password");
  EXPECT_EQ(error({"status", "--password", "x"}), "1 there is no option --password");
  EXPECT_EQ(error({"sync", "--password=x"}), "1 there is no option --password");
  EXPECT_EQ(error({"sync", "-px"}), "1 there is no option -p");
}

TEST(Options, AskForHelpOfTheProgramOrOfOneCommand) {
  const ParsedOptions program = parseOptions({"--help"});
  EXPECT_TRUE(program.stop);
  for (const std::string& command : commandNames()) EXPECT_THAT(program.text, HasSubstr(command));
  const ParsedOptions create = parseOptions({"folder", "create", "--help"});
  EXPECT_TRUE(create.stop);
  EXPECT_THAT(create.text, HasSubstr("airsync folder create"));
  EXPECT_THAT(create.text, HasSubstr("--parent"));
  const ParsedOptions change = parseOptions({"change", "--help"});
  EXPECT_TRUE(change.stop);
  EXPECT_THAT(change.text, HasSubstr("RECORD"));
}

TEST(Options, AskForTheVersion) {
  const ParsedOptions parsed = parseOptions({"--version"});
  EXPECT_TRUE(parsed.stop);
  EXPECT_THAT(parsed.text, testing::MatchesRegex("airsync [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

}  // namespace
}  // namespace airsync
