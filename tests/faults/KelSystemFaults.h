// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSYSTEMFAULTS_H
#define KELSYSTEMFAULTS_H

#include <functional>

/// Stands between a program and the system while it lives: counts the calls by which the thread that made it changes
/// or reads files, and lets one of them go wrong. A test repeats its work with the fault at the first, the second, …
/// call until hasStruck() says that the work is done with fewer calls.
///
/// The calls are intercepted by functions of the same names in the test program (KelSystemFaults.cpp), which the dynamic
/// linker finds before those of the C library. Only one object at a time.
class KelSystemFaults
{
public:
    enum Kind {
        Nothing,    ///< only counts
        Error,      ///< this call fails with the error number
        FullDisk,   ///< from this call on nothing is written any more; a write still takes the first half of its bytes
        ShortWrite, ///< this write takes only half of its bytes (another call: nothing happens)
        Kill,       ///< the process ends before this call, as by kill -9
        TornKill,   ///< as Kill, behind half of the bytes if it is a write
        Interfere   ///< a function is called before the call
    };
    enum Calls {
        Writes, ///< opening for writing, writing, synchronising, renaming, removing, folders, access rights
        Reads   ///< reading
    };
    /// Gets the path that the call names, nullptr for calls on open files.
    using Interference = std::function<void(const char *path)>;

    /// @p at counts from 1.
    KelSystemFaults(Kind kind, Calls calls, int at, int errorNumber = 0, Interference interference = nullptr);
    ~KelSystemFaults();
    KelSystemFaults(const KelSystemFaults &) = delete;
    KelSystemFaults &operator=(const KelSystemFaults &) = delete;

    /// How many calls there were so far.
    [[nodiscard]] int count() const;
    /// Whether there were as many calls as the fault needed.
    [[nodiscard]] bool hasStruck() const;
};

#endif
