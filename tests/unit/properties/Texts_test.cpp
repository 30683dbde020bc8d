// Times, identifiers and base64 on their way through their text forms.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "Generators.h"
#include "document/Base64.h"
#include "support/ServerId.h"
#include "support/Time.h"

namespace airsync_test {
namespace {

using namespace AIRSYNC_STACK;

RC_GTEST_PROP(TextProperties, AnIdentifierSurvives, ()) {
  std::string text = *AnyFullText();
  if (*rc::gen::arbitrary<bool>())
    text += std::string(static_cast<std::size_t>(*rc::gen::inRange(0, 40)), 'x');
  const SERVER_ID id = ServerId::fromChar(text.c_str());
  char back[49];
  RC_ASSERT(std::string(ServerId::toChar(id, back)) == text.substr(0, 48));
  RC_ASSERT(ServerId::compare(id, ServerId::fromChar(back)) == 0);
}

RC_GTEST_PROP(TextProperties, ASecondIsTheOneThatThePlatformMeans, ()) {
  // Any second that fits: from 1 March 1968 to 19 January 2038.
  const INT32 second = *rc::gen::inRange<INT32>(-57974400, INT32_MAX);
  const time_t wide = second;
  struct tm parts = {};
  gmtime_r(&wide, &parts);
  RC_ASSERT(mkgmtime(&parts) == second);
}

RC_GTEST_PROP(TextProperties, AFractionOfASecondAddsOneSecond, ()) {
  const INT32 second = *rc::gen::inRange<INT32>(-57974400, INT32_MAX - 1);
  const INT32 fraction = *rc::gen::inRange(0, 1000);
  const time_t wide = second;
  struct tm parts = {};
  gmtime_r(&wide, &parts);
  INT32 year = parts.tm_year + 1900;
  INT32 month = parts.tm_mon + 1;
  INT32 milliseconds = fraction;
  AdjustTime(year, month, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec, milliseconds);
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  RC_ASSERT(timegm(&parts) == wide + (fraction == 0 ? 0 : 1));
  RC_ASSERT(milliseconds == 0);
}

RC_GTEST_PROP(TextProperties, Base64GivesBackWhatItWasGiven, (const std::vector<UINT8>& bytes)) {
  const std::size_t groups = (bytes.size() + 2) / 3;
  std::vector<char> text(groups * 4 + 1);
  SmlBase64Encode(text.data(), bytes.data(), static_cast<int>(bytes.size()));
  RC_ASSERT(std::strlen(text.data()) == groups * 4);
  std::vector<char> back(groups * 3 + 1);
  RC_ASSERT(SmlBase64Decode(back.data(), text.data()));
  back.resize(bytes.size());
  RC_ASSERT(std::vector<UINT8>(back.begin(), back.end()) == bytes);
}

}  // namespace
}  // namespace airsync_test
