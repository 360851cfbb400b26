// Decoded pictures come and go by the thousand while a reader scrolls. The C
// library learns from the first large one that is freed to take those of its
// size from its heap, whose gaps then grow with the pictures; this keeps it to
// memory that goes back to the system with each of them.
//
// Thread: once, at the beginning of main.

#pragma once

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace quire {

inline void returnPictureMemory()
{
#ifdef __GLIBC__
    constexpr int smallestPicture = 256 * 1024; // bytes
    mallopt(M_MMAP_THRESHOLD, smallestPicture);
#endif
}

} // namespace quire
