// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTUPLEWRITER_H
#define KELGPXTUPLEWRITER_H

#include <QString>

#include <array>
#include <cstdint>

class QDateTime;

/// Writes coordinate tuples behind a text, by way of a small buffer, so that the text grows in few large steps.
/// The text is complete when the writer is gone.
class KelGPXTupleWriter
{
public:
    explicit KelGPXTupleWriter(QString &text);
    ~KelGPXTupleWriter();

    KelGPXTupleWriter(const KelGPXTupleWriter &) = delete;
    KelGPXTupleWriter &operator=(const KelGPXTupleWriter &) = delete;

    /// QString::number(degrees, 'f', 10) without the zeros at its end; the point stays.
    void appendCoordinate(double degrees);
    void appendInteger(qint64 number);
    void append(char16_t character);

private:
    static constexpr std::size_t CAPACITY = 2048;
    static constexpr std::size_t LONGEST_NUMBER = 24;

    void makeRoom();
    void flush();
    void appendByText(double degrees);
    void appendDigits(std::uint64_t number);

    QString &m_text;
    std::array<char16_t, CAPACITY> m_buffer;
    char16_t *m_end = m_buffer.data();
};

#endif
