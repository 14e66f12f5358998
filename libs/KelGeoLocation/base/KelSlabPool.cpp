// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelSlabPool.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>
#include <utility>

namespace
{

// Set when the thread's caches were returned: from then on it must not begin new ones.
constinit thread_local bool threadHasEnded = false;

// Null where the system has none to give.
void *mapPages(std::size_t size, int flags) noexcept
{
    void *const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | flags, -1, 0);
    return memory == MAP_FAILED ? nullptr : memory;
}

// False where the system cannot, as when that would cut a mapping in two and there are as many as there may be.
bool unmapPages(void *memory, std::size_t size) noexcept
{
    return size == 0 || munmap(memory, size) == 0;
}

// Bytes up to the next address that is a multiple of the alignment.
std::size_t misalignment(const void *memory, std::size_t alignment) noexcept
{
    return (0 - reinterpret_cast<std::uintptr_t>(memory)) % alignment;
}

// Memory that is aligned to its size; null where there is none.
char *mapAligned(std::size_t size, int flags) noexcept
{
    // Below the memory before, which is where the system usually continues, the next one is aligned, too.
    void *const memory = mapPages(size, flags);
    if (!memory || misalignment(memory, size) == 0)
        return static_cast<char *>(memory);
    unmapPages(memory, size);
    auto *const wide = static_cast<char *>(mapPages(2 * size, 0));
    if (!wide)
        return nullptr;
    // What cannot be unmapped has no pages: nobody ever touches it.
    const std::size_t before = misalignment(wide, size);
    unmapPages(wide, before);
    unmapPages(wide + before + size, size - before);
    return wide + before;
}

} // namespace

/// Returns the caches of a thread when the thread ends.
class KelSlabPool::ThreadEnd
{
public:
    constexpr ThreadEnd() noexcept = default;
    ~ThreadEnd()
    {
        threadHasEnded = true;
        while (m_first) {
            ThreadCache *const cache = std::exchange(m_first, m_first->m_nextOfThread);
            cache->m_pool->close(*cache);
        }
    }
    Q_DISABLE_COPY_MOVE(ThreadEnd)

    void add(ThreadCache *cache) noexcept { cache->m_nextOfThread = std::exchange(m_first, cache); }

    static ThreadEnd &ofThisThread()
    {
        static thread_local ThreadEnd threadEnd;
        return threadEnd;
    }

private:
    ThreadCache *m_first = nullptr;
};

int KelSlabPool::slabCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_slabCount + static_cast<int>(static_cast<std::size_t>(m_uncutEnd - m_uncut) / SLAB_SIZE);
}

int KelSlabPool::heapSlabCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_heapSlabCount;
}

// ---- slabs ----------------------------------------------------------------------------------------------------

KelSlabPool::Slab *KelSlabPool::slabOf(Object *object) noexcept
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): slabs begin at multiples of their size
    return reinterpret_cast<Slab *>(reinterpret_cast<std::uintptr_t>(object) & ~std::uintptr_t(SLAB_SIZE - 1));
}

void *KelSlabPool::cutSlab(bool &isFromHeap)
{
    void *slab = cutMappedSlab();
    isFromHeap = slab == nullptr;
    if (isFromHeap) {
        slab = ::operator new(SLAB_SIZE, std::align_val_t(SLAB_SIZE));
        ++m_heapSlabCount;
    }
    ++m_slabCount;
    return slab;
}

void *KelSlabPool::cutMappedSlab() noexcept
{
    if (m_uncut == m_uncutEnd && m_slabCount >= SINGLE_SLABS) {
        m_uncut = mapAligned(BLOCK_SIZE, 0);
        m_uncutEnd = m_uncut ? m_uncut + BLOCK_SIZE : nullptr;
        // No more than a wish: without huge pages there are small ones.
        if (m_uncut)
            madvise(m_uncut, BLOCK_SIZE, MADV_HUGEPAGE);
    }
    if (m_uncut != m_uncutEnd)
        return std::exchange(m_uncut, m_uncut + SLAB_SIZE);
    // Its pages are wanted at once: a single call costs less than a fault for each.
    return mapAligned(SLAB_SIZE, MAP_POPULATE);
}

void KelSlabPool::returnUncut() noexcept
{
    if (!unmapPages(m_uncut, static_cast<std::size_t>(m_uncutEnd - m_uncut)))
        return;
    m_uncut = nullptr;
    m_uncutEnd = nullptr;
}

void KelSlabPool::giveBack(Slab *slabs) noexcept
{
    // Neighbours in one call, and with luck as a whole huge page, which then need not be split.
    std::array<char *, KEPT_SLABS> some;
    while (slabs) {
        std::size_t count = 0;
        while (slabs && count < some.size()) {
            Slab *const slab = std::exchange(slabs, slabs->next);
            if (slab->isFromHeap)
                ::operator delete(slab, std::align_val_t(SLAB_SIZE));
            else
                some[count++] = reinterpret_cast<char *>(slab);
        }
        std::sort(some.begin(), some.begin() + count);
        for (std::size_t first = 0, behind = 0; first < count; first = behind) {
            do {
                ++behind;
            } while (behind < count && some[behind] == some[behind - 1] + SLAB_SIZE);
            if (!unmapPages(some[first], (behind - first) * SLAB_SIZE))
                keepAddresses(some[first], some[first] + (behind - first) * SLAB_SIZE);
        }
    }
}

// Of slabs that the system does not take back. Their pages it does; the first of each comes back for the header that is
// written into it.
void KelSlabPool::keepAddresses(char *slabs, char *end) noexcept
{
    madvise(slabs, static_cast<std::size_t>(end - slabs), MADV_DONTNEED);
    const std::lock_guard lock(m_mutex);
    for (; slabs != end; slabs += SLAB_SIZE) {
        m_stuckSlabs = new (slabs) Slab{nullptr, m_stuckSlabs, nullptr, 0, false};
        ++m_slabCount;
    }
}

void KelSlabPool::enlist(Slab *slab) noexcept
{
    slab->previous = nullptr;
    slab->next = m_partSlabs;
    if (m_partSlabs)
        m_partSlabs->previous = slab;
    m_partSlabs = slab;
}

void KelSlabPool::unlist(Slab *slab) noexcept
{
    if (slab->previous)
        slab->previous->next = slab->next;
    else
        m_partSlabs = slab->next;
    if (slab->next)
        slab->next->previous = slab->previous;
}

// ---- from the slabs -------------------------------------------------------------------------------------------

void *KelSlabPool::allocateFromSlabs(ThreadCache &cache)
{
    if (!cache.m_pool)
        open(cache);
    if (cache.m_spare) {
        cache.m_free = std::exchange(cache.m_spare, nullptr);
        cache.m_freeCount = BATCH;
    } else {
        fill(cache, cache.m_closed ? 1 : BATCH);
    }
    return allocate(cache, m_objectSize);
}

void KelSlabPool::fill(ThreadCache &cache, int wanted)
{
    if (fillFromPartSlabs(cache, wanted))
        return;
    takeNewSlab(cache);
    if (!cache.m_closed)
        return;
    // Nobody returns this cache any more, so all but the one object goes to the slab.
    char *const first = cache.m_unused;
    cache.m_unused += m_objectSize;
    close(cache);
    cache.m_unused = first;
    cache.m_unusedEnd = first + m_objectSize;
}

bool KelSlabPool::fillFromPartSlabs(ThreadCache &cache, int wanted)
{
    const std::lock_guard lock(m_mutex);
    Slab *const slab = m_partSlabs;
    if (!slab)
        return false;
    for (int i = 0; i < wanted && slab->free; ++i) {
        Object *const object = std::exchange(slab->free, slab->free->next);
        --slab->freeCount;
        object->next = std::exchange(cache.m_free, object);
        ++cache.m_freeCount;
    }
    if (!slab->free)
        unlist(slab);
    return true;
}

void KelSlabPool::takeNewSlab(ThreadCache &cache)
{
    void *memory = nullptr;
    bool isFromHeap = false;
    {
        const std::lock_guard lock(m_mutex);
        if (m_keptSlabs) {
            isFromHeap = m_keptSlabs->isFromHeap;
            memory = std::exchange(m_keptSlabs, m_keptSlabs->next);
            --m_keptCount;
        } else if (m_stuckSlabs) {
            memory = std::exchange(m_stuckSlabs, m_stuckSlabs->next);
        } else {
            memory = cutSlab(isFromHeap);
        }
    }
    // Here the system may have to make a page, and nobody else needs to wait for it.
    Slab *const slab = new (memory) Slab{};
    slab->isFromHeap = isFromHeap;
    cache.m_unused = reinterpret_cast<char *>(slab) + HEADER_SIZE;
    cache.m_unusedEnd = cache.m_unused + static_cast<std::size_t>(m_capacity) * m_objectSize;
}

// ---- to the slabs ---------------------------------------------------------------------------------------------

void KelSlabPool::releaseToSlabs(ThreadCache &cache, Object *object) noexcept
{
    if (!cache.m_pool)
        open(cache);
    if (cache.m_closed) {
        object->next = nullptr;
        returnObjects(object);
        return;
    }
    if (cache.m_freeCount == BATCH) {
        returnObjects(std::exchange(cache.m_spare, cache.m_free));
        cache.m_free = nullptr;
        cache.m_freeCount = 0;
    }
    release(cache, object, m_objectSize);
}

void KelSlabPool::returnObjects(Object *objects) noexcept
{
    if (!objects)
        return;
    Slab *toUnmap = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        while (objects)
            objects = returnNeighbours(objects, &toUnmap);
    }
    giveBack(toUnmap);
}

// The first ones that share a slab; gives those behind.
KelSlabPool::Object *KelSlabPool::returnNeighbours(Object *first, Slab **toUnmap) noexcept
{
    Slab *const slab = slabOf(first);
    Object *last = first;
    int count = 1;
    for (; last->next && slabOf(last->next) == slab; last = last->next)
        ++count;
    Object *const behind = std::exchange(last->next, slab->free);
    slab->free = first;
    slab->freeCount += count;
    if (slab->freeCount == count)
        enlist(slab);
    if (slab->freeCount == m_capacity) {
        unlist(slab);
        if (m_keptCount == KEPT_SLABS)
            dropKeptSlabs(slab, toUnmap);
        slab->next = std::exchange(m_keptSlabs, slab);
        ++m_keptCount;
    }
    return behind;
}

// All but those in the block of that slab: they go when the block does.
void KelSlabPool::dropKeptSlabs(const Slab *latest, Slab **toUnmap) noexcept
{
    static_assert(KEPT_SLABS >= BLOCK_SIZE / SLAB_SIZE);
    const auto blockOf = [](const Slab *slab) { return reinterpret_cast<std::uintptr_t>(slab) / BLOCK_SIZE; };
    Slab *slabs = std::exchange(m_keptSlabs, nullptr);
    while (slabs) {
        Slab *const slab = std::exchange(slabs, slabs->next);
        const bool stays = blockOf(slab) == blockOf(latest);
        slab->next = std::exchange(stays ? m_keptSlabs : *toUnmap, slab);
        m_keptCount -= stays ? 0 : 1;
        m_slabCount -= stays ? 0 : 1;
        m_heapSlabCount -= !stays && slab->isFromHeap ? 1 : 0;
    }
    returnUncut();
}

// ---- the threads' caches --------------------------------------------------------------------------------------

void KelSlabPool::open(ThreadCache &cache)
{
    cache.m_pool = this;
    if (threadHasEnded) {
        cache.m_closed = true;
        return;
    }
    ThreadEnd::ofThisThread().add(&cache);
    cache.m_limit = BATCH;
}

void KelSlabPool::close(ThreadCache &cache) noexcept
{
    cache.m_closed = true;
    cache.m_limit = 0;
    cache.m_freeCount = 0;
    returnObjects(std::exchange(cache.m_free, nullptr));
    returnObjects(std::exchange(cache.m_spare, nullptr));

    Object *unused = nullptr;
    while (cache.m_unused != cache.m_unusedEnd) {
        unused = new (cache.m_unused) Object{unused};
        cache.m_unused += m_objectSize;
    }
    returnObjects(unused);
}
