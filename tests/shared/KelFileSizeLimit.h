// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELFILESIZELIMIT_H
#define KELFILESIZELIMIT_H

#include <csignal>
#include <sys/resource.h>

/// No file of this process may grow beyond so many bytes, as on a full disk, while the object lives.
class KelFileSizeLimit
{
public:
    explicit KelFileSizeLimit(rlim_t bytes)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }

    KelFileSizeLimit(const KelFileSizeLimit &) = delete;
    KelFileSizeLimit &operator=(const KelFileSizeLimit &) = delete;

    ~KelFileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before = {};
    void (*m_handler)(int) = nullptr;
};

#endif
