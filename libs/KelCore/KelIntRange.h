// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELINTRANGE_H
#define KELINTRANGE_H

#include <KelCoreGlobal.h>
#include <KelRange.h>

#include <QList>

class QDebug;
class QImage;

/// A closed range of integers: rows or columns of an image, indices of a list, numbers of repetitions. Both ends belong
/// to it.
///
/// An empty range is written as an inverted one, [0, -1]; loop with
/// `for (int i = range.firstIndex(); i < range.lastIndexEvenIfUnvalid(); ++i)`, never with `!=`.
/// [0, 0] is one element here, although it counts as unset for expandTo().
class KELCORE_EXPORT KelIntRange : public KelRange<int>
{
public:
    /// [0, 0], the unset range.
    KelIntRange() = default;
    /// Both ends as they are; `min` may exceed `max`.
    KelIntRange(int min, int max);

    ~KelIntRange() override = default;
    KelIntRange(const KelIntRange &) = default;
    KelIntRange(KelIntRange &&) = default;
    KelIntRange &operator=(const KelIntRange &) = default;
    KelIntRange &operator=(KelIntRange &&) = default;

    /// All rows, [0, height - 1]; [0, -1] for a null image.
    [[nodiscard]] static KelIntRange rowsOfImage(const QImage &image);

    /// All columns, [0, width - 1]; [0, -1] for a null image.
    [[nodiscard]] static KelIntRange columnsOfImage(const QImage &image);

    /// Cuts the range into pieces for parallel work: one for each processor core, fewer if there are fewer elements.
    ///
    /// The pieces follow one another in ascending order, do not overlap, cover the range, and differ in size by one at
    /// most. An inverted range comes back as the only piece, so that the result is never an empty list.
    [[nodiscard]] QList<KelIntRange> splitEvenlyForCpuCores() const;

    /// As splitEvenlyForCpuCores(), for a given number of pieces (at least 1 is taken).
    [[nodiscard]] QList<KelIntRange> splitEvenly(int pieces) const;

    /// Another name of min().
    [[nodiscard]] int firstIndex() const noexcept
    {
        return min();
    }

    /// The index at which a loop over the range ends, max() + 1, computed alike for inverted ranges. The greatest
    /// integer has no successor; a range that ends there ends its loop one element early.
    [[nodiscard]] int lastIndexEvenIfUnvalid() const noexcept;

    /// Number of elements, 0 for an inverted range; limited to the greatest int.
    [[nodiscard]] int size() const noexcept;
};

/// Writes "[0, 9]".
KELCORE_EXPORT QDebug operator<<(QDebug debug, const KelIntRange &range);

/// Equal ranges have equal hashes.
[[nodiscard]] KELCORE_EXPORT size_t qHash(const KelIntRange &range, size_t seed = 0) noexcept;

#endif
