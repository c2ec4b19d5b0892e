#include "Support/AllocationCounter.hpp"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::uint64_t> count{0};

void* counted(std::size_t size) {
    count.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size != 0 ? size : 1)) return memory;
    throw std::bad_alloc();
}

void* countedAligned(std::size_t size, std::align_val_t alignment) {
    count.fetch_add(1, std::memory_order_relaxed);
    const auto unit = static_cast<std::size_t>(alignment);
    const std::size_t whole = (size + unit - 1) / unit * unit;
    if (void* memory = std::aligned_alloc(unit, whole != 0 ? whole : unit)) return memory;
    throw std::bad_alloc();
}

}  // namespace

std::uint64_t trelvan::test::allocationCount() { return count.load(std::memory_order_relaxed); }

void* operator new(std::size_t size) { return counted(size); }
void* operator new[](std::size_t size) { return counted(size); }
void* operator new(std::size_t size, std::align_val_t alignment) { return countedAligned(size, alignment); }
void* operator new[](std::size_t size, std::align_val_t alignment) { return countedAligned(size, alignment); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
