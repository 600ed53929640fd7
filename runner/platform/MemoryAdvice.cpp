#include "runner/MemoryAdvice.h"

#include <cstdint>

#if !defined(_WIN32)
#include <sys/mman.h>
#endif

namespace ffrunner {

void AdviseLargePages(void* data, size_t bytes) {
#if defined(_WIN32) || !defined(MADV_HUGEPAGE)
    (void)data;
    (void)bytes;
#else
    // The advice applies to whole pages: those lying entirely inside the range.
    constexpr uintptr_t kPage = 4096;
    const uintptr_t begin = (reinterpret_cast<uintptr_t>(data) + kPage - 1) & ~(kPage - 1);
    const uintptr_t end = (reinterpret_cast<uintptr_t>(data) + bytes) & ~(kPage - 1);
    if (data == nullptr || end <= begin) return;
    madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
}

}  // namespace ffrunner
