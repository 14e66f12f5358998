// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSINGLETON_H
#define KELSINGLETON_H

#include <KelCoreGlobal.h>

#include <QReadLocker>
#include <QReadWriteLock>
#include <QScopeGuard>
#include <QWriteLocker>
#include <QtGlobal>

#include <atomic>
#include <thread>

/// The one process-wide object of a class: `class KelThing : public KelSingleton<KelThing>`.
///
/// The object is created on the first call of instance(), set up once by its setupInstance(), and never deleted, so
/// that it may be used as long as the process runs, in destructors of static objects too. A class that keeps its
/// constructor to itself makes `KelSingleton<KelThing>` its friend.
///
/// instance() may be called from any thread; what the object itself may be asked from which thread is its own rule.
/// A QObject belongs to the thread that created it: hosts that care call instance() once from the main thread.
///
/// The template has default visibility: library and program share one instance. A class that lives in a library
/// instantiates the template in its source, `template class KelSingleton<KelThing>;`, so that plugins share it as well
/// when the library itself does not use it.
template<class T>
class KELCORE_TEMPLATE_EXPORT KelSingleton
{
public:
    KelSingleton(const KelSingleton &) = delete;
    KelSingleton &operator=(const KelSingleton &) = delete;

    /// The one object. Other threads see it only when setupInstance() has returned; until then they wait.
    ///
    /// setupInstance() itself, and whatever it calls in the same thread, may ask for instance() and gets the object
    /// as far as it is set up. It must not wait for another thread that asks for it, and the constructor must not ask
    /// for it at all (there is nothing to hand out yet: the process ends with a fatal message instead of a deadlock).
    static T &instance();

protected:
    KelSingleton() = default;
    virtual ~KelSingleton() = default;

    /// Called once, after construction and before anyone else can see the object. Does nothing by default.
    virtual void setupInstance()
    {
    }

private:
    struct State
    {
        QReadWriteLock lock;
        // Atomic although the lock orders all access: thread checkers understand this, but cannot look into Qt's lock.
        std::atomic<T *> instance = nullptr;
        // The thread that creates the object, for the time it does so, and what it has got so far.
        std::atomic<std::thread::id> creator{};
        T *unfinished = nullptr;
    };

    // A state that no destructor ends: the lock must outlive every static object that may still use the instance.
    union LastingState
    {
        LastingState() : state() {}
        ~LastingState() {}
        State state;
    };

    static State &state()
    {
        static LastingState theState;
        return theState.state;
    }

    static T &create(State &state);
};

template<class T>
T &KelSingleton<T>::instance()
{
    State &state = KelSingleton::state();
    if (Q_UNLIKELY(state.creator.load(std::memory_order_relaxed) == std::this_thread::get_id())) {
        // This thread holds the write lock: asking for the lock once more would wait for ever.
        if (!state.unfinished)
            qFatal("KelSingleton: the constructor of a singleton asks for its own instance");
        return *state.unfinished;
    }
    {
        const QReadLocker locker(&state.lock);
        if (T *existing = state.instance.load(std::memory_order_acquire))
            return *existing;
    }
    const QWriteLocker locker(&state.lock);
    // Another thread may have been faster between the two locks.
    T *const existing = state.instance.load(std::memory_order_acquire);
    return existing ? *existing : create(state);
}

template<class T>
T &KelSingleton<T>::create(State &state)
{
    state.creator.store(std::this_thread::get_id(), std::memory_order_relaxed);
    const auto guard = qScopeGuard([&state] {
        state.unfinished = nullptr;
        state.creator.store(std::thread::id(), std::memory_order_relaxed);
    });
    T *const created = new T;
    state.unfinished = created;
    static_cast<KelSingleton *>(created)->setupInstance();
    state.instance.store(created, std::memory_order_release);
    return *created;
}

#endif
