// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelBenchCost.h"

#include <QtGlobal>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace
{

double seconds(const timeval &time)
{
    return double(time.tv_sec) + double(time.tv_usec) * 1e-6;
}

} // namespace

KelBenchCost KelBenchCost::of(const std::function<bool()> &work, int repetitions)
{
    KelBenchCost best{1e9, 1e9};
    for (int i = 0; i < repetitions; ++i) {
        const pid_t child = fork();
        if (child == 0)
            _exit(work() ? EXIT_SUCCESS : EXIT_FAILURE);
        int status = 0;
        rusage usage = {};
        if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0)
            qFatal("a measured process failed");
        best.seconds = std::min(best.seconds, ::seconds(usage.ru_utime) + ::seconds(usage.ru_stime));
        best.mebibytes = std::min(best.mebibytes, double(usage.ru_maxrss) / 1024.0);
    }
    return best;
}
