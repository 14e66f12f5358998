// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGeoPositionImpl.h"

#include <KelSlabPool.h>

namespace
{

constinit KelSlabPool positionPool(sizeof(KelGeoPositionImpl));
// Read for every object: not worth a function call.
[[gnu::tls_model("initial-exec")]] constinit thread_local KelSlabPool::ThreadCache positionCache;

// The latest that this thread asked for with std::nothrow. Subclasses have other sizes, which only the usual operator delete
// is told.
struct UnthrownPosition
{
    void *memory = nullptr;
    std::size_t size = 0;
};
constinit thread_local UnthrownPosition latestUnthrownPosition;

} // namespace

KelGeoPositionImpl::~KelGeoPositionImpl() = default;

void *KelGeoPositionImpl::operator new(std::size_t size)
{
    return KelSlabPool::STANDS_ASIDE ? ::operator new(size) : positionPool.allocate(positionCache, size);
}

void *KelGeoPositionImpl::operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    try {
        latestUnthrownPosition = {operator new(size), size};
        return latestUnthrownPosition.memory;
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

void KelGeoPositionImpl::operator delete(void *memory, std::size_t size) noexcept
{
    KelSlabPool::STANDS_ASIDE ? ::operator delete(memory) : positionPool.release(positionCache, memory, size);
}

void KelGeoPositionImpl::operator delete(void *memory, const std::nothrow_t &) noexcept
{
    // Another one was asked for in between, by the constructor that threw: better lost than in the wrong place.
    if (memory == latestUnthrownPosition.memory)
        operator delete(memory, latestUnthrownPosition.size);
}
