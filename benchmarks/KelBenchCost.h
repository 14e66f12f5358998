// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELBENCHCOST_H
#define KELBENCHCOST_H

#include <functional>

/// What a piece of work costs a process that does nothing else.
struct KelBenchCost
{
    double seconds = 0.0;   ///< CPU time, user and system
    double mebibytes = 0.0; ///< peak of the memory in use

    /// The best of so many child processes. Ends the program when one of them fails; `work` returns false for that.
    [[nodiscard]] static KelBenchCost of(const std::function<bool()> &work, int repetitions);
};

#endif
