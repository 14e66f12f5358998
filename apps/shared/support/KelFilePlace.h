// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELFILEPLACE_H
#define KELFILEPLACE_H

#include <QString>

#include <sys/types.h>

/// Where a file lies, whatever it is called: two names of one file are equal, be they relative or absolute, links or second
/// names of it. The file need not exist, neither need its folder.
class KelFilePlace
{
public:
    /// The place from which the system reads what has this name.
    [[nodiscard]] static KelFilePlace ofInput(const QString &path);
    /// The place to which KelOutputFile and KelSelectionFile write under this name. Another one where ".." follows a link:
    /// they take that away together with the link.
    [[nodiscard]] static KelFilePlace ofResult(const QString &path);
    /// The folder of that place.
    [[nodiscard]] static KelFilePlace folderOfResult(const QString &path);

    /// Where links lead in the end, absolute; empty if they lead around in a ring.
    [[nodiscard]] static QString endOfLinks(const QString &path);

    [[nodiscard]] bool exists() const noexcept { return m_rest.isEmpty(); }

    [[nodiscard]] bool operator==(const KelFilePlace &other) const = default;

private:
    explicit KelFilePlace(QString absolutePath);

    dev_t m_device = 0;
    ino_t m_file = 0;
    QString m_rest; ///< what does not exist yet, below that
};

#endif
