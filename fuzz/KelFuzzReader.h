// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELFUZZREADER_H
#define KELFUZZREADER_H

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

/// Makes values of an input's bytes, for targets that need more than a text. Behind the last byte everything is 0, so
/// that every input means something.
class KelFuzzReader
{
public:
    KelFuzzReader(const std::uint8_t *data, std::size_t size);

    [[nodiscard]] bool atEnd() const noexcept;

    /// From 0 to 255.
    int byte();
    /// From 0 to limit - 1.
    int below(int limit);
    bool flag();
    std::int16_t int16();
    std::int32_t int32();
    std::int64_t int64();
    /// Eight bytes as they are: infinities, denormals and what is no number included.
    double anyDouble();
    /// In 65,536 steps from -limit to limit, so that small changes of the input are small changes.
    double within(double limit);
    /// At most so many bytes.
    QByteArray bytes(std::size_t limit);
    QByteArray rest();

private:
    const std::uint8_t *m_at;
    const std::uint8_t *m_end;
};

#endif
