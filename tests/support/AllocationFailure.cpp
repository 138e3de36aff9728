#include "AllocationFailure.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocationCount  = 0;
thread_local std::size_t allocatedBytes   = 0;
thread_local std::size_t failAtAllocation = 0;

void CountOne(std::size_t size)
{
  allocatedBytes += size;
  if (++allocationCount == failAtAllocation) throw std::bad_alloc();
}

void* Require(void* memory)
{
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

// The array forms and those that take std::nothrow are here although the standard library's end in the plain ones:
// AddressSanitizer has its own, and what they give may not be freed here.
void* operator new(std::size_t size)
{
  CountOne(size);
  return Require(std::malloc(size == 0 ? 1 : size));
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
  CountOne(size);
  const std::size_t unit = static_cast<std::size_t>(alignment);
  return Require(std::aligned_alloc(unit, (size + unit - 1) / unit * unit));
}

void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, std::align_val_t alignment) { return operator new(size, alignment); }

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
  try {
    return operator new(size, alignment);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept { return operator new(size, nothrow); }
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t& nothrow) noexcept
{
  return operator new(size, alignment, nothrow);
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }

void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }

void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept { std::free(memory); }

namespace quilon_test {

AllocationFailure::AllocationFailure(std::size_t allocation) noexcept
    : formerCount_(allocationCount), formerBytes_(allocatedBytes), formerFailAt_(failAtAllocation)
{
  allocationCount  = 0;
  allocatedBytes   = 0;
  failAtAllocation = allocation;
}

AllocationFailure::~AllocationFailure()
{
  allocationCount += formerCount_;
  allocatedBytes += formerBytes_;
  failAtAllocation = formerFailAt_;
}

std::size_t AllocationFailure::GetCount() const noexcept { return allocationCount; }

std::size_t AllocationFailure::GetBytes() const noexcept { return allocatedBytes; }

bool AllocationFailure::HasFailed() const noexcept
{
  return failAtAllocation != 0 && allocationCount >= failAtAllocation;
}

}  // namespace quilon_test
