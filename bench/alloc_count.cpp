// Counts every heap allocation of the process. The benchmark program defines
// malloc, calloc and realloc itself, so that every caller in the process, the
// kalvor library and the C++ runtime's operator new included, reaches these
// definitions; each counts the call and hands it to the C library's own
// allocator. Only glibc offers that allocator under a second name, and
// sanitizers bring an allocator of their own: elsewhere nothing is counted.
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "support.h"

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define KB_COUNT_ALLOCATIONS 1
#endif

namespace {
std::atomic<uint64_t> g_allocations{0};
}

#if KB_COUNT_ALLOCATIONS
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* pointer, size_t size);

void* malloc(size_t size) {
  g_allocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_malloc(size);
}
void* calloc(size_t count, size_t size) {
  g_allocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_calloc(count, size);
}
void* realloc(void* pointer, size_t size) {
  g_allocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_realloc(pointer, size);
}
}
#endif

namespace kb {

bool counting_allocations() {
#if KB_COUNT_ALLOCATIONS
  return true;
#else
  return false;
#endif
}

uint64_t allocations() { return g_allocations.load(std::memory_order_relaxed); }

}  // namespace kb
