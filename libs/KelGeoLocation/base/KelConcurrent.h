// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELCONCURRENT_H
#define KELCONCURRENT_H

#include <KelGeoLocationGlobal.h>

#include <QList>
#ifndef KEL_STD_THREAD_EXECUTOR
#include <QtConcurrentMap>
#endif

#include <algorithm>
#include <atomic>
#include <exception>
#include <functional>
#include <iterator>
#include <limits>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>
#ifdef KEL_STD_THREAD_EXECUTOR
#include <thread>
#include <vector>
#endif

/// Blocking maps over independent pieces of work: on the global thread pool where that helps, one piece after the
/// other in the calling thread where the pool has enough to do already. The results are the same either way.
///
/// The function is called once per element, from several threads at a time, and must bear that; pieces that write
/// do so into disjoint places. The caller waits until the last piece is done. Calls may be nested, and pool threads
/// may call: while such a caller waits, its place in the pool is free for others, so that callers never block one
/// another for ever. No piece and a single piece are done by the caller itself.
///
/// When pieces throw, the caller gets the very exception of the first of them (in the order of the sequence), as it
/// would from a plain loop; of the pieces behind that one some may have been done, too.
///
/// Builds with KEL_STD_THREAD_EXECUTOR start plain threads instead of using the pool, for tools that cannot see
/// into the pool's synchronisation.
class KELGEOLOCATION_EXPORT KelConcurrent
{
public:
    /// Running tasks of the global thread pool from which on a worker thread does its pieces itself: three times
    /// the ideal thread count at the time when the library was loaded.
    static const int maxRunningThreads;

    /// Whether a map that starts now in the calling thread would use further threads: always in the application's
    /// main thread, otherwise while the global thread pool runs fewer than maxRunningThreads tasks. Callers that
    /// wait for a map of their own count as running.
    [[nodiscard]] static bool mayRunParallel();

    /// The results of @p function for every element of @p sequence, in the order of the sequence.
    template<class Sequence, class Function>
    [[nodiscard]] static auto blockingMapped(const Sequence &sequence, Function function)
    {
        using Result = std::decay_t<std::invoke_result_t<Function &, decltype(*std::cbegin(sequence))>>;
        return isWorthThreads(sequence) ? mappedInParallel<Result>(sequence, function)
                                        : mappedInOrder<Result>(sequence, function);
    }

    /// Calls @p function for every element of @p sequence; the same rules, without results.
    template<class Sequence, class Function>
    static void blockingMap(const Sequence &sequence, Function function)
    {
        if (!isWorthThreads(sequence)) {
            for (const auto &element : sequence)
                std::invoke(function, element);
            return;
        }
        const auto call = [&function](const auto &element) {
            std::invoke(function, element);
            return true;
        };
        mappedInParallel<bool>(sequence, call);
    }

private:
    /// For as long as it lives, the place of the calling thread in the global pool is free for others.
    /// Does nothing outside of the pool.
    class KELGEOLOCATION_EXPORT ReleasedPoolThread
    {
    public:
        ReleasedPoolThread();
        ~ReleasedPoolThread();
        Q_DISABLE_COPY_MOVE(ReleasedPoolThread)

    private:
        bool m_released;
    };

    /// Keeps the exception of the first piece that failed, whatever the order in which the pieces run.
    class FirstException
    {
    public:
        /// Pieces behind a failed one need not run any more.
        [[nodiscard]] bool isBehind(qsizetype index) const { return m_index.load(std::memory_order_relaxed) < index; }

        void store(qsizetype index, std::exception_ptr exception)
        {
            const std::lock_guard lock(m_mutex);
            if (m_exception && m_index.load(std::memory_order_relaxed) < index)
                return;
            m_exception = std::move(exception);
            m_index.store(index, std::memory_order_relaxed);
        }

        void rethrow() const
        {
            if (m_exception)
                std::rethrow_exception(m_exception);
        }

    private:
        std::mutex m_mutex;
        std::atomic<qsizetype> m_index{std::numeric_limits<qsizetype>::max()};
        std::exception_ptr m_exception;
    };

    template<class Iterator>
    struct Piece
    {
        Iterator element;
        qsizetype index;
    };

    template<class Sequence>
    static bool isWorthThreads(const Sequence &sequence)
    {
        const auto first = std::cbegin(sequence);
        const auto last = std::cend(sequence);
        return first != last && std::next(first) != last && mayRunParallel();
    }

    template<class Result, class Sequence, class Function>
    static QList<Result> mappedInOrder(const Sequence &sequence, Function &function)
    {
        QList<Result> results;
        for (const auto &element : sequence)
            results.push_back(std::invoke(function, element));
        return results;
    }

    template<class Result, class Sequence, class Function>
    static QList<Result> mappedInParallel(const Sequence &sequence, Function &function)
    {
        using Iterator = decltype(std::cbegin(sequence));
        QList<Piece<Iterator>> pieces;
        for (auto it = std::cbegin(sequence); it != std::cend(sequence); ++it)
            pieces.push_back({it, pieces.size()});

        FirstException failure;
        const auto map = [&function, &failure](const Piece<Iterator> &piece) -> std::optional<Result> {
            if (failure.isBehind(piece.index))
                return std::nullopt;
            try {
                return std::invoke(function, *piece.element);
            } catch (...) {
                failure.store(piece.index, std::current_exception());
                return std::nullopt;
            }
        };
        QList<Result> results = execute<Result>(pieces, map);
        failure.rethrow();
        return results;
    }

#ifdef KEL_STD_THREAD_EXECUTOR
    template<class Result, class Pieces, class Map>
    static QList<Result> execute(const Pieces &pieces, const Map &map)
    {
        std::vector<std::optional<Result>> values(static_cast<std::size_t>(pieces.size()));
        const qsizetype wanted = std::max(2U, std::thread::hardware_concurrency());
        const qsizetype threads = std::min(pieces.size(), wanted);
        // Each thread has pieces of its own from the start. A common counter would keep the pieces in an order that
        // the pool does not promise, and so hide their races.
        const auto work = [&pieces, &map, &values, threads](qsizetype first) {
            for (qsizetype i = first; i < pieces.size(); i += threads)
                values[static_cast<std::size_t>(i)] = map(pieces.at(i));
        };
        {
            std::vector<std::jthread> others;
            for (qsizetype i = 1; i < threads; ++i)
                others.emplace_back(work, i);
            work(0);
        }
        QList<Result> results;
        for (std::optional<Result> &value : values) {
            if (value)
                results.push_back(std::move(*value));
        }
        return results;
    }
#else
    template<class Result, class Pieces, class Map>
    static QList<Result> execute(const Pieces &pieces, const Map &map)
    {
        const auto append = [](QList<Result> &results, const std::optional<Result> &result) {
            if (result)
                results.push_back(*result);
        };
        QFuture<QList<Result>> future =
            QtConcurrent::mappedReduced<QList<Result>>(pieces, map, append, QtConcurrent::OrderedReduce);
        const ReleasedPoolThread released;
        return future.takeResult();
    }
#endif
};

#endif
