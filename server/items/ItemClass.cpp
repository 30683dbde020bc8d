#include "items/ItemClass.h"

#include <array>

#include "data/FolderStore.h"
#include "items/ContactClass.h"

namespace demoserver {
namespace {

// A class whose folders are there, but hold nothing.
class EmptyClass : public ItemClass {
 public:
  explicit EmptyClass(std::string_view name) : name_(name) {}

  std::string_view name() const override { return name_; }
  Element encode(const nlohmann::json&, const TransferOptions&) const override { refuse(); }
  nlohmann::json decode(const Element&, const nlohmann::json&, const TransferOptions&) const override {
    refuse();
  }
  nlohmann::json check(const nlohmann::json&) const override { refuse(); }
  nlohmann::json view(const nlohmann::json&) const override { refuse(); }

 private:
  [[noreturn]] void refuse() const {
    throw ItemError("folders of class " + std::string(name_) + " hold no items on this server");
  }

  std::string_view name_;
};

}  // namespace

std::size_t bodyLimitOf(int truncation) {
  constexpr std::array<std::size_t, 8> kLimits = {0, 4096, 5120, 7168, 10240, 20480, 51200, 102400};
  if (truncation < 0 || static_cast<std::size_t>(truncation) >= kLimits.size()) return std::string::npos;
  return kLimits[static_cast<std::size_t>(truncation)];
}

const ItemClass* itemClassOf(int folderType) {
  static const ContactClass contacts;
  static const EmptyClass calendar("Calendar");
  static const EmptyClass mail("Email");
  switch (folderType) {
    case kContacts:
    case kUserContacts:
      return &contacts;
    case kCalendar:
    case kUserCalendar:
      return &calendar;
    case kGenericFolder:
    case kInbox:
    case kDrafts:
    case kDeletedItems:
    case kSentItems:
    case kOutbox:
    case kUserMail:
      return &mail;
    default:
      return nullptr;
  }
}

}  // namespace demoserver
