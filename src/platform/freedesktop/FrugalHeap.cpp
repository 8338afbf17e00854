#include "platform/freedesktop/FrugalHeap.h"

#include <malloc.h>

namespace orvelle {

#ifdef __GLIBC__

namespace {

constexpr int megabyte = 1 << 20;

} // namespace

// mallopt(3). What is set here no longer adjusts itself.
void keepHeapFrugal()
{
    mallopt(M_MMAP_THRESHOLD, megabyte); // larger blocks are returned when they are freed
    mallopt(M_TRIM_THRESHOLD, megabyte); // what may stay free at the end of the heap
    mallopt(M_ARENA_MAX, 2);             // the workers share one
}

#else

void keepHeapFrugal() {}

#endif

} // namespace orvelle
