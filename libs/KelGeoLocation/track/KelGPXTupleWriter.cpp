// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTupleWriter.h"

#include <QStringView>

#include <bit>
#include <cmath>
#include <cstring>

namespace
{

constexpr int DECIMALS = 10;
constexpr std::uint64_t DECIMALS_FACTOR = 10'000'000'000; // 10^DECIMALS

// A double of 64 bits: a sign, eleven bits of exponent, 52 of the mantissa, whose first bit is not written.
constexpr int MANTISSA_BITS = 52;
constexpr std::uint64_t HIDDEN_BIT = std::uint64_t(1) << MANTISSA_BITS;
constexpr int EXPONENT_OF_UNIT = 1023 + MANTISSA_BITS; // of a mantissa that is a whole number

/// "00" to "99".
constexpr std::array<char16_t, 200> PAIRS = [] {
    std::array<char16_t, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = char16_t(u'0' + i / 10);
        pairs[2 * i + 1] = char16_t(u'0' + i % 10);
    }
    return pairs;
}();

void writePair(char16_t *at, std::uint32_t number)
{
    std::memcpy(at, PAIRS.data() + std::size_t(2) * number, 2 * sizeof(char16_t));
}

/// All ten digits of a number below 10^10.
void writeDecimals(char16_t *at, std::uint64_t number)
{
    const auto high = std::uint32_t(number / 1'000'000); // four digits
    const auto low = std::uint32_t(number % 1'000'000);
    writePair(at, high / 100);
    writePair(at + 2, high % 100);
    writePair(at + 4, low / 10000);
    writePair(at + 6, low / 100 % 100);
    writePair(at + 8, low % 100);
}

} // namespace

KelGPXTupleWriter::KelGPXTupleWriter(QString &text)
    : m_text(text)
{
}

KelGPXTupleWriter::~KelGPXTupleWriter()
{
    flush();
}

void KelGPXTupleWriter::append(char16_t character)
{
    makeRoom();
    *m_end++ = character;
}

// From the exact value: a double is a whole number times a power of two, so |degrees| * 10^10 fits into 128 bits and is
// rounded (half up, as the conversion of Qt does) by a shift.
void KelGPXTupleWriter::appendCoordinate(double degrees)
{
    // Angles and everything else of that size. Small values have exponents too far below for the shift; a zero
    // loses its sign in the text, which is one more reason to leave them to the conversion.
    const double size = std::abs(degrees);
    if (!(size >= 1e-6 && size < 1e6)) {
        appendByText(degrees);
        return;
    }
    const auto bits = std::bit_cast<std::uint64_t>(size);
    const std::uint64_t mantissa = (bits & (HIDDEN_BIT - 1)) | HIDDEN_BIT;
    const int shift = EXPONENT_OF_UNIT - int(bits >> MANTISSA_BITS); // 33 ... 72
    __extension__ typedef unsigned __int128 Wide;
    const Wide scaled = Wide(mantissa) * DECIMALS_FACTOR;
    const auto rounded = static_cast<std::uint64_t>((scaled + (Wide(1) << (shift - 1))) >> shift);

    makeRoom();
    if (degrees < 0)
        *m_end++ = u'-';
    appendDigits(rounded / DECIMALS_FACTOR);
    *m_end++ = u'.';
    writeDecimals(m_end, rounded % DECIMALS_FACTOR);
    m_end += DECIMALS;
    while (m_end[-1] == u'0') // ends at the point
        --m_end;
}

void KelGPXTupleWriter::appendInteger(qint64 number)
{
    makeRoom();
    if (number < 0)
        *m_end++ = u'-';
    appendDigits(number < 0 ? 0 - std::uint64_t(number) : std::uint64_t(number));
}

void KelGPXTupleWriter::makeRoom()
{
    if (std::size_t(m_buffer.data() + CAPACITY - m_end) < LONGEST_NUMBER)
        flush();
}

void KelGPXTupleWriter::flush()
{
    m_text.append(QStringView(m_buffer.data(), m_end));
    m_end = m_buffer.data();
}

void KelGPXTupleWriter::appendByText(double degrees)
{
    flush();
    QString number = QString::number(degrees, 'f', DECIMALS);
    while (number.endsWith(QLatin1Char('0')))
        number.chop(1);
    m_text.append(number);
}

void KelGPXTupleWriter::appendDigits(std::uint64_t number)
{
    std::array<char16_t, LONGEST_NUMBER> digits;
    char16_t *const end = digits.data() + digits.size();
    char16_t *at = end;
    while (number >= 100) {
        at -= 2;
        writePair(at, std::uint32_t(number % 100));
        number /= 100;
    }
    if (number >= 10) {
        at -= 2;
        writePair(at, std::uint32_t(number));
    } else {
        *--at = char16_t(u'0' + number);
    }
    const auto length = std::size_t(end - at);
    std::memcpy(m_end, at, length * sizeof(char16_t));
    m_end += length;
}
