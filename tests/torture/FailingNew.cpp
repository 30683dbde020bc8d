#include "torture/FailingNew.h"

#include <cstdlib>
#include <new>

#include "support/HostCode.h"

namespace torture {

namespace {

thread_local bool counting = false;
std::size_t count = 0;
std::size_t failAt = 0;

void* Allocate(std::size_t size) {
  if (counting && !airsync_test::HostCode::Runs() && ++count == failAt) return nullptr;
  return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

FailingNew::FailingNew(std::size_t k) {
  count = 0;
  failAt = k;
  counting = true;
}

FailingNew::~FailingNew() { counting = false; }

std::size_t FailingNew::Count() const { return count; }

}  // namespace torture

void* operator new(std::size_t size) {
  void* const block = torture::Allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return torture::Allocate(size); }

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
