// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGeoPositionImpl.h"

#include <KelSlabPool.h>

namespace
{

constinit KelSlabPool positionPool(sizeof(KelGeoPositionImpl));
// Read for every object: not worth a function call.
[[gnu::tls_model("initial-exec")]] constinit thread_local KelSlabPool::ThreadCache positionCache;

} // namespace

KelGeoPositionImpl::~KelGeoPositionImpl() = default;

void *KelGeoPositionImpl::operator new(std::size_t size)
{
    return KelSlabPool::STANDS_ASIDE ? ::operator new(size) : positionPool.allocate(positionCache, size);
}

void KelGeoPositionImpl::operator delete(void *memory, std::size_t size) noexcept
{
    KelSlabPool::STANDS_ASIDE ? ::operator delete(memory) : positionPool.release(positionCache, memory, size);
}
