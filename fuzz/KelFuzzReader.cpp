// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFuzzReader.h"

#include <algorithm>
#include <bit>

KelFuzzReader::KelFuzzReader(const std::uint8_t *data, std::size_t size)
    : m_at(data)
    , m_end(data + size)
{
}

bool KelFuzzReader::atEnd() const noexcept
{
    return m_at == m_end;
}

int KelFuzzReader::byte()
{
    return atEnd() ? 0 : *m_at++;
}

int KelFuzzReader::below(int limit)
{
    return (limit > 256 ? byte() << 8 | byte() : byte()) % limit;
}

bool KelFuzzReader::flag()
{
    return (byte() & 1) != 0;
}

std::int16_t KelFuzzReader::int16()
{
    const int low = byte();
    return static_cast<std::int16_t>(low | byte() << 8);
}

std::int32_t KelFuzzReader::int32()
{
    std::uint32_t value = 0;
    for (unsigned shift = 0; shift < 32; shift += 8)
        value |= static_cast<std::uint32_t>(byte()) << shift;
    return static_cast<std::int32_t>(value);
}

std::int64_t KelFuzzReader::int64()
{
    const auto low = static_cast<std::uint32_t>(int32());
    const auto high = static_cast<std::uint32_t>(int32());
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(high) << 32 | low);
}

double KelFuzzReader::anyDouble()
{
    return std::bit_cast<double>(int64());
}

double KelFuzzReader::within(double limit)
{
    return limit * int16() / 32768.0;
}

QByteArray KelFuzzReader::bytes(std::size_t limit)
{
    const std::size_t count = std::min(limit, static_cast<std::size_t>(m_end - m_at));
    const QByteArray result(reinterpret_cast<const char *>(m_at), qsizetype(count));
    m_at += count;
    return result;
}

QByteArray KelFuzzReader::rest()
{
    return bytes(static_cast<std::size_t>(m_end - m_at));
}
