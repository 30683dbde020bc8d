#include "http/Authentication.h"

#include <gtest/gtest.h>

namespace demoserver {
namespace {

TEST(DemoAuthentication, TakesDomainUserAndPassword) {
  EXPECT_TRUE(isAuthorized("Basic REVNTy9kZW1vOmRlbW8=", {}));  // DEMO/demo:demo
  EXPECT_TRUE(isAuthorized("basic REVNTy9kZW1vOmRlbW8=", {}));
  EXPECT_TRUE(isAuthorized("Basic L3U6", {"", "u", ""}));              // /u:
  EXPECT_TRUE(isAuthorized("Basic ZC91OnDDpMOf", {"d", "u", "päß"}));  // d/u:päß
}

TEST(DemoAuthentication, RefusesEverythingElse) {
  for (const char* value : {"", "Basic", "Basic ", "Digest REVNTy9kZW1vOmRlbW8=", "REVNTy9kZW1vOmRlbW8=",
                            "Basic REVNTy9kZW1vOmRlbW8", "Basic REVNTy9kZW1vOmRlbW8==", "Basic ZGVtbzpkZW1v",
                            "Basic REVNTy9kZW1vOmRlbWA=", "Basic  REVNTy9kZW1vOmRlbW8="})
    EXPECT_FALSE(isAuthorized(value, {})) << value;
}

}  // namespace
}  // namespace demoserver
