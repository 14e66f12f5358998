// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMEMORYLIMIT_H
#define KELMEMORYLIMIT_H

#include <cstdio>
#include <sys/resource.h>
#include <unistd.h>

/// This process may take only so many bytes of address space more than it has, as if memory were short, while the object
/// lives.
class KelMemoryLimit
{
public:
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    /// Sanitizers take address space of their own in large pieces.
    static constexpr bool IS_POSSIBLE = false;
#else
    static constexpr bool IS_POSSIBLE = true;
#endif

    explicit KelMemoryLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_AS, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = addressSpace() + bytes;
        setrlimit(RLIMIT_AS, &limit);
    }

    KelMemoryLimit(const KelMemoryLimit &) = delete;
    KelMemoryLimit &operator=(const KelMemoryLimit &) = delete;

    ~KelMemoryLimit()
    {
        setrlimit(RLIMIT_AS, &m_before);
    }

private:
    static rlim_t addressSpace()
    {
        unsigned long long pages = 0;
        if (std::FILE *file = std::fopen("/proc/self/statm", "r")) {
            if (std::fscanf(file, "%llu", &pages) != 1)
                pages = 0;
            std::fclose(file);
        }
        return static_cast<rlim_t>(pages) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
    }

    rlimit m_before = {};
};

#endif
