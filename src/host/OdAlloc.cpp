#include "OdAlloc.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<OdrxAllocFunction> g_alloc{&std::malloc};
std::atomic<OdrxFreeFunction> g_free{&std::free};
} // namespace

void* odrxAlloc(std::size_t size)
{
    return g_alloc.load()(size);
}

void odrxFree(void* memory)
{
    g_free.load()(memory);
}

void* odrxAllocOrThrow(std::size_t size)
{
    for (;;) {
        if (void* memory = odrxAlloc(size))
            return memory;
        const std::new_handler handler = std::get_new_handler();
        if (!handler)
            throw std::bad_alloc();
        handler();
    }
}

void odrxSetAllocator(OdrxAllocFunction alloc, OdrxFreeFunction free)
{
    g_alloc.store(alloc ? alloc : &std::malloc);
    g_free.store(free ? free : &std::free);
}
