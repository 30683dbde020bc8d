#include "http/Message.h"

#include <gtest/gtest.h>

namespace demoserver {
namespace {

TEST(DemoTarget, IsSplitIntoPathAndParameters) {
  HttpRequest request;
  ASSERT_TRUE(parseTarget("/a/b?Cmd=Sync&User=d%C3%A9mo&Empty=&Flag&Cmd=Other", request));
  EXPECT_EQ(request.path, "/a/b");
  EXPECT_EQ(request.parameter("Cmd"), "Sync");
  EXPECT_EQ(request.parameter("User"), "démo");
  EXPECT_EQ(request.parameter("Empty"), "");
  EXPECT_TRUE(request.query.contains("Flag"));
  EXPECT_EQ(request.parameter("missing"), "");
}

TEST(DemoTarget, MayHaveNoQuery) {
  HttpRequest request;
  ASSERT_TRUE(parseTarget("/x", request));
  EXPECT_EQ(request.path, "/x");
  EXPECT_TRUE(request.query.empty());
}

TEST(DemoTarget, KeepsPlusSignsAndEqualSignsInValues) {
  HttpRequest request;
  ASSERT_TRUE(parseTarget("/x?a=1+2=3", request));
  EXPECT_EQ(request.parameter("a"), "1+2=3");
}

TEST(DemoTarget, BrokenPercentEncodingIsRefused) {
  for (const char* target : {"/x?a=%", "/x?a=%4", "/x?a=%4g", "/x?a=%g4", "/x?%zz=1"}) {
    HttpRequest request;
    EXPECT_FALSE(parseTarget(target, request)) << target;
  }
}

}  // namespace
}  // namespace demoserver
