#pragma once

#include <cstddef>

// The drawing runtime's allocator. Module objects are allocated here so that the runtime, which
// frees them, and the module agree on the heap. Like malloc, odrxAlloc answers null when there is
// no memory; callers apply the new-handler rule themselves (see odrxAllocOrThrow).
void* odrxAlloc(std::size_t size);
void odrxFree(void* memory);

// Allocates through odrxAlloc the way operator new does: while the allocator answers null, call
// the installed new-handler and try again; with no handler installed throw std::bad_alloc.
void* odrxAllocOrThrow(std::size_t size);

// The functions behind odrxAlloc/odrxFree. A host that keeps its own heap (or checks its memory)
// installs them at start-up; null functions put the C library's malloc/free back.
using OdrxAllocFunction = void* (*)(std::size_t size);
using OdrxFreeFunction = void (*)(void* memory);
void odrxSetAllocator(OdrxAllocFunction alloc, OdrxFreeFunction free);
