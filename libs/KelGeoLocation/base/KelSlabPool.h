// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSLABPOOL_H
#define KELSLABPOOL_H

#include <QtGlobal>

#include <cstddef>
#include <mutex>

/// Memory for a class of which there are millions: objects of one size without a header each, for the class's own
/// operator new and operator delete.
///
/// The memory comes from the system in slabs of 64 KiB, each aligned to its size, so that the slab of an object is
/// known from its address. A slab knows how many of its objects are free; with the last one it may go back to the
/// system. Up to KEPT_SLABS (2 MiB) wait for the next objects; when one more comes, all but its neighbours go at once.
/// Small pools grow slab by slab, large ones (from SINGLE_SLABS on) cut their slabs from blocks of 2 MiB, for which the
/// system has huge pages: most of what memory costs is its pages. The uncut rest of a block goes back as soon as the pool
/// shrinks.
///
/// Each thread takes from a cache of its own, without locks: a list of free objects and the unused rest of a slab. An
/// object may be released in any thread, whose cache it enters. Caches and slabs exchange BATCH objects at a time, and
/// a thread keeps twice as many at most; only there a mutex is taken. When a thread ends, its cache goes back to the
/// slabs. Objects that a thread still needs while it ends (static objects of the program, for instance) are taken and
/// returned one by one.
///
/// So once everything is released, the memory that is kept is that of KEPT_SLABS and, for each thread that still lives,
/// the rest of one slab and the slabs of 2 * BATCH objects.
///
/// Pools and caches are constant-initialised and are never destroyed, so they work at any time before, in and after
/// main(). A child process of fork() may use them if its parent had one thread. A thread that uses a pool for the first
/// time while it ends, in the destructor of a thread_local object, returns its cache all the same; only what the main
/// thread takes for the first time in a static destructor ends with the process.
///
/// Where the system has no pages of their own to give (a limit on addresses or on mappings), slabs come from the heap.
/// A slab that the system does not take back keeps its addresses, and of its pages only that of its header, until it is
/// wanted again.
///
/// Sanitizers see neither borders nor lifetimes within a slab, so in their builds classes should leave the pool alone:
/// \code
/// constinit KelSlabPool pool(sizeof(Shape));
/// constinit thread_local KelSlabPool::ThreadCache cache;
///
/// void *Shape::operator new(std::size_t size)
/// {
///     return KelSlabPool::STANDS_ASIDE ? ::operator new(size) : pool.allocate(cache, size);
/// }
/// void Shape::operator delete(void *memory, std::size_t size) noexcept
/// {
///     KelSlabPool::STANDS_ASIDE ? ::operator delete(memory) : pool.release(cache, memory, size);
/// }
/// \endcode
class KelSlabPool
{
    struct Object
    {
        Object *next;
    };

public:
    static constexpr std::size_t SLAB_SIZE = 64 * 1024;
    static constexpr int BATCH = 32;
    static constexpr int KEPT_SLABS = 32;
    static constexpr int SINGLE_SLABS = 32;
    static constexpr std::size_t BLOCK_SIZE = 2 * 1024 * 1024;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr bool STANDS_ASIDE = true;
#elif defined(__has_feature)
    static constexpr bool STANDS_ASIDE = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
    static constexpr bool STANDS_ASIDE = false;
#endif

    /// What one thread has at hand of one pool. Belongs into a constinit thread_local variable.
    class ThreadCache
    {
    public:
        constexpr ThreadCache() noexcept = default;
        Q_DISABLE_COPY_MOVE(ThreadCache)

    private:
        friend class KelSlabPool;

        Object *m_free = nullptr;
        int m_freeCount = 0;
        // 0 keeps every release from the quick way: before the first use and after the end of the thread.
        int m_limit = 0;
        char *m_unused = nullptr;
        char *m_unusedEnd = nullptr;
        // Exactly BATCH objects or none: with a second list, taking and releasing by turns never exchanges batches
        // each time.
        Object *m_spare = nullptr;

        KelSlabPool *m_pool = nullptr;
        ThreadCache *m_nextOfThread = nullptr;
        bool m_closed = false;
    };

    /// A pool of objects of that many bytes (a multiple of eight, at most 1 KiB), aligned to eight bytes.
    explicit constexpr KelSlabPool(std::size_t objectSize) noexcept
        : m_objectSize(objectSize)
        , m_capacity(static_cast<int>((SLAB_SIZE - HEADER_SIZE) / objectSize))
    {
    }
    Q_DISABLE_COPY_MOVE(KelSlabPool)

    /// Memory for an object. Sizes other than the pool's come from the global operator new. Throws std::bad_alloc.
    [[nodiscard]] void *allocate(ThreadCache &cache, std::size_t size)
    {
        if (size != m_objectSize)
            return ::operator new(size);
        if (Object *object = cache.m_free) {
            cache.m_free = object->next;
            --cache.m_freeCount;
            return object;
        }
        if (cache.m_unused != cache.m_unusedEnd) {
            char *const object = cache.m_unused;
            cache.m_unused += m_objectSize;
            return object;
        }
        return allocateFromSlabs(cache);
    }

    /// Takes back what allocate() gave for that size, in this thread or in another one.
    void release(ThreadCache &cache, void *memory, std::size_t size) noexcept
    {
        if (size != m_objectSize) {
            ::operator delete(memory);
            return;
        }
        auto *const object = static_cast<Object *>(memory);
        if (cache.m_freeCount >= cache.m_limit) {
            releaseToSlabs(cache, object);
            return;
        }
        object->next = cache.m_free;
        cache.m_free = object;
        ++cache.m_freeCount;
    }

    /// Slabs that the pool has from the system at the moment, those that are not cut yet included.
    [[nodiscard]] int slabCount() const;

    /// How many slabs come from the heap at the moment.
    [[nodiscard]] int heapSlabCount() const;

private:
    struct Slab
    {
        Slab *previous;
        Slab *next;
        Object *free;
        int freeCount;
        bool isFromHeap;
    };
    static constexpr std::size_t HEADER_SIZE = 64;
    static_assert(sizeof(Slab) <= HEADER_SIZE);

    class ThreadEnd;

    static Slab *slabOf(Object *object) noexcept;
    void giveBack(Slab *slabs) noexcept;
    void keepAddresses(char *slabs, char *end) noexcept;
    void *cutSlab(bool &isFromHeap);
    void *cutMappedSlab() noexcept;
    void returnUncut() noexcept;

    void *allocateFromSlabs(ThreadCache &cache);
    void releaseToSlabs(ThreadCache &cache, Object *object) noexcept;
    void open(ThreadCache &cache);
    void close(ThreadCache &cache) noexcept;

    void fill(ThreadCache &cache, int wanted);
    bool fillFromPartSlabs(ThreadCache &cache, int wanted);
    void takeNewSlab(ThreadCache &cache);
    void returnObjects(Object *objects) noexcept;
    Object *returnNeighbours(Object *first, Slab **toUnmap) noexcept;
    void dropKeptSlabs(const Slab *latest, Slab **toUnmap) noexcept;
    void enlist(Slab *slab) noexcept;
    void unlist(Slab *slab) noexcept;

    const std::size_t m_objectSize;
    const int m_capacity;

    // Guards all that follows and the slabs' headers.
    mutable std::mutex m_mutex;
    // Slabs with free objects, and slabs with nothing else.
    Slab *m_partSlabs = nullptr;
    Slab *m_keptSlabs = nullptr;
    // That the system did not take back.
    Slab *m_stuckSlabs = nullptr;
    int m_keptCount = 0;
    int m_slabCount = 0;
    int m_heapSlabCount = 0;
    // The rest of a block.
    char *m_uncut = nullptr;
    char *m_uncutEnd = nullptr;
};

#endif
