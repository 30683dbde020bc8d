// Store files that somebody or something damaged: an error with a story, or a store that can be used.
//
// Keeps S19.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "store/Store.h"

namespace {

using namespace airsync;

// One directory for the process, gone with it.
class Place {
 public:
  Place() {
    std::string name = (std::filesystem::temp_directory_path() / "airsync-fuzz-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    directory_ = name;
    { Store made(directory_ / "fresh.db"); }
    std::ifstream stream(directory_ / "fresh.db", std::ios::binary);
    fresh_.assign(std::istreambuf_iterator<char>(stream), {});
  }
  ~Place() { std::filesystem::remove_all(directory_); }

  std::filesystem::path file() const { return directory_ / "store.db"; }
  const std::string& fresh() const { return fresh_; }

 private:
  std::filesystem::path directory_;
  std::string fresh_;
};

void Use(const std::filesystem::path& file) {
  Store store(file);
  for (const Folder& folder : store.folders()) {
    store.listItems(folder.number, [&store](const ItemSummary& item) {
      store.item(item.number);
      return true;
    });
  }
  store.failures();
}

}  // namespace

// Four bytes of the input say where in a new file the others stand.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  static Place place;
  if (size < 4) return 0;
  std::string bytes = place.fresh();
  const std::size_t at = (data[0] + 256U * data[1] + 65536U * data[2]) % bytes.size();
  for (std::size_t i = 4; i < size && at + i - 4 < bytes.size(); ++i) {
    bytes[at + i - 4] = static_cast<char>(data[i]);
  }
  if (data[3] % 4 == 0) bytes.resize(at);
  for (const char* suffix : {"-wal", "-shm"}) std::filesystem::remove(place.file().string() + suffix);
  std::filesystem::remove(place.file());
  std::ofstream(place.file(), std::ios::binary) << bytes;
  try {
    Use(place.file());
  } catch (const Error&) {  // NOLINT(bugprone-empty-catch): refused, as it should be
  }
  return 0;
}
