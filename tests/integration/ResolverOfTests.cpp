// Loaded before the C library: what localhost stands for is what the test says.
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <netdb.h>

extern "C" int getaddrinfo(const char* node, const char* service, const addrinfo* hints, addrinfo** result) {
  using Function = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
  const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "getaddrinfo"));
  const char* told = std::getenv("AIRSYNC_TEST_LOCALHOST");
  const bool ours = told != nullptr && node != nullptr && std::strcmp(node, "localhost") == 0;
  return real(ours ? told : node, service, hints, result);
}
