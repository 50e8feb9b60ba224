// How much memory the process has asked for.

#pragma once

#include <malloc.h>

#include <cstddef>

/// The bytes that were allocated and have not been freed. Newer versions of
/// glibc count blocks that they keep for the next request of that size, so
/// measure after many rounds and again after as many. Of no use under
/// AddressSanitizer, which has its own heap and finds lost memory itself.
inline std::size_t heap_in_use() {
  const struct mallinfo2 heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}
