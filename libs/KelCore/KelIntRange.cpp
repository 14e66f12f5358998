// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelIntRange.h"

#include <QDebug>
#include <QHashFunctions>
#include <QImage>
#include <QThread>

#include <algorithm>
#include <limits>

namespace
{

qint64 exactSize(const KelIntRange &range)
{
    return std::max<qint64>(0, static_cast<qint64>(range.max()) - range.min() + 1);
}

} // namespace

KelIntRange::KelIntRange(int min, int max)
    : KelRange<int>(min, max)
{
}

KelIntRange KelIntRange::rowsOfImage(const QImage &image)
{
    return KelIntRange(0, image.height() - 1);
}

KelIntRange KelIntRange::columnsOfImage(const QImage &image)
{
    return KelIntRange(0, image.width() - 1);
}

QList<KelIntRange> KelIntRange::splitEvenlyForCpuCores() const
{
    return splitEvenly(QThread::idealThreadCount());
}

QList<KelIntRange> KelIntRange::splitEvenly(int pieces) const
{
    const qint64 total = exactSize(*this);
    const qint64 count = std::clamp<qint64>(pieces, 1, std::max<qint64>(1, total));
    if (count == 1)
        return {*this};

    QList<KelIntRange> result;
    result.reserve(static_cast<qsizetype>(count));
    // Every piece begins where the one before ends, so rounding leaves neither gap nor overlap.
    for (qint64 i = 0; i < count; ++i) {
        const qint64 begin = min() + total * i / count;
        const qint64 end = min() + total * (i + 1) / count;
        result.append(KelIntRange(static_cast<int>(begin), static_cast<int>(end - 1)));
    }
    return result;
}

int KelIntRange::lastIndexEvenIfUnvalid() const noexcept
{
    return max() == std::numeric_limits<int>::max() ? max() : max() + 1;
}

int KelIntRange::size() const noexcept
{
    return static_cast<int>(std::min<qint64>(exactSize(*this), std::numeric_limits<int>::max()));
}

QDebug operator<<(QDebug debug, const KelIntRange &range)
{
    const QDebugStateSaver saver(debug);
    debug.nospace().noquote() << '[' << range.min() << ", " << range.max() << ']';
    return debug;
}

size_t qHash(const KelIntRange &range, size_t seed) noexcept
{
    return qHashMulti(seed, range.min(), range.max());
}
