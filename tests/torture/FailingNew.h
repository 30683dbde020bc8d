// The library's own uses of operator new: counted, and failing on demand.
#ifndef TESTS_TORTURE_FAILING_NEW_H
#define TESTS_TORTURE_FAILING_NEW_H

#include <cstddef>

namespace torture {

/// While one lives, operator new is counted outside of the host's callbacks; the k-th one fails, counted from
/// 1 (0: none).
class FailingNew {
 public:
  explicit FailingNew(std::size_t k);
  ~FailingNew();
  FailingNew(const FailingNew&) = delete;
  FailingNew& operator=(const FailingNew&) = delete;

  std::size_t Count() const;
};

}  // namespace torture

#endif
