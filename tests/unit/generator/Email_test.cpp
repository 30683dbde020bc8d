// The data of a mail as it goes to the server: whether it was read, and nothing else.
#include "GeneratorRig.h"

namespace airsync_test {
namespace {

class GeneratorEmail : public GeneratorRig {
 protected:
  GeneratorEmail() { folder.dataType = DATATYPE_EMAIL; }

  std::string ChangeOf(AS_EMAIL_T& mail) {
    HandOut(AS_CHANGE_CHANGE, "3:1", 0, &mail);
    return NextCommands();
  }
};

TEST_F(GeneratorEmail, WritesWhetherItWasRead) {
  AS_EMAIL_T mail = {};
  for (const int read : {0, 1, 2, 255}) {
    mail.Read = static_cast<UINT8>(read);
    EXPECT_EQ(ChangeOf(mail),
              "Commands(Change(ServerId=\"3:1\" ApplicationData(Read@2=\"" + std::to_string(read) + "\")))");
  }
}

TEST_F(GeneratorEmail, WritesNothingElseOfTheRecord) {
  AS_EMAIL_T mail = {};
  AS_ATTACHMENT_T attachment = {};
  AS_MEETING_REQUEST_T request = {};
  mail.Subject = mail.To = mail.Body = const_cast<char*>("x");
  mail.Importance = 2;
  mail.Attachments = &attachment;
  mail.AttachmentCount = 1;
  mail.MeetingRequest = &request;
  EXPECT_EQ(ChangeOf(mail), "Commands(Change(ServerId=\"3:1\" ApplicationData(Read@2=\"0\")))");
}

TEST_F(GeneratorEmail, DropsAnAddAndAChangeWithoutARecord) {
  AS_EMAIL_T mail = {};
  HandOut(AS_CHANGE_ADD, "", 1, &mail);
  HandOut(AS_CHANGE_ADD, "", 2, nullptr);
  HandOut(AS_CHANGE_CHANGE, "3:2", 0, nullptr);
  EXPECT_EQ(NextCommands(), "");
  EXPECT_EQ(status, GENERATOR_DONE);
  EXPECT_EQ(store.ChangesLeft(), 0U);
}

}  // namespace
}  // namespace airsync_test
