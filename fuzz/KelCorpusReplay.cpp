// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Runs a fuzz target over every file of the given folders, with any compiler.

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const QFileInfoList inputs = QDir(QFile::decodeName(argv[i])).entryInfoList(QDir::Files, QDir::Name);
        for (const QFileInfo &input : inputs) {
            QFile file(input.filePath());
            if (input.suffix() == QLatin1String("license") || !file.open(QIODevice::ReadOnly))
                continue;
            const QByteArray bytes = file.readAll();
            if (qEnvironmentVariableIsSet("KEL_VERBOSE"))
                std::fprintf(stderr, "%s\n", qPrintable(input.filePath()));
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()), std::size_t(bytes.size()));
            ++count;
        }
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1; // an empty corpus tests nothing
}
