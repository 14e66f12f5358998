// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELFUZZ_H
#define KELFUZZ_H

#include <QByteArray>
#include <QDebug>
#include <QString>
#include <QTextStream>

#include <bit>
#include <cstddef>
#include <cstdint>

/// One input. The return value is 0, as libFuzzer wants it; whoever finds a fault ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Called once before the first input: an application without a display, settings of its own, silence.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);

/// What all fuzz targets share.
namespace KelFuzz
{

/// Says what went wrong and ends the process, so that the fuzzer keeps the input.
[[noreturn]] void fail(const char *rule, const QString &first = QString(), const QString &second = QString());

inline void check(bool holds, const char *rule)
{
    if (!holds)
        fail(rule);
}

/// Same value, told apart by how it is printed.
template<typename Value>
void compare(const Value &actual, const Value &expected, const char *rule)
{
    if (actual == expected)
        return;
    QString actualText;
    QString expectedText;
    QDebug(&actualText) << actual;
    QDebug(&expectedText) << expected;
    fail(rule, actualText, expectedText);
}

/// To the last bit: zeros keep their sign. All that is not a number is one value.
inline bool isSame(double first, double second)
{
    return (first != first && second != second) || std::bit_cast<std::uint64_t>(first) == std::bit_cast<std::uint64_t>(second);
}

void compareDouble(double actual, double expected, const char *rule);

/// The input's bytes, without a copy.
inline QByteArray bytes(const std::uint8_t *data, std::size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
}

} // namespace KelFuzz

#endif
