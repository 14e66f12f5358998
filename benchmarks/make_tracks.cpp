// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Writes a file of made-up points, always the same for the same arguments:
//
//     make_tracks <gpx|kml|compact> <plain|dateline|many|enclaves> <points> <file> [seed]

#include "KelBenchTracks.h"

#include <QMap>
#include <QStringList>

#include <cstdio>

int main(int argc, char **argv)
{
    using namespace KelBenchTracks;
    static const QMap<QString, Form> forms{{QStringLiteral("gpx"), Form::Gpx},
                                           {QStringLiteral("kml"), Form::Kml},
                                           {QStringLiteral("compact"), Form::Compact}};
    static const QMap<QString, Kind> kinds{{QStringLiteral("plain"), Kind::Plain},
                                           {QStringLiteral("dateline"), Kind::DateLine},
                                           {QStringLiteral("many"), Kind::Many},
                                           {QStringLiteral("enclaves"), Kind::Enclaves}};
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const int count = arguments.value(2).toInt();
    if (!forms.contains(arguments.value(0)) || !kinds.contains(arguments.value(1)) || count < 1
        || arguments.value(3).isEmpty()) {
        std::fputs("usage: make_tracks <gpx|kml|compact> <plain|dateline|many|enclaves> <points> <file> [seed]\n",
                   stderr);
        return 2;
    }
    writeFile(arguments.at(3), forms.value(arguments.at(0)), kinds.value(arguments.at(1)), count,
              arguments.value(4, QStringLiteral("5")).toUInt());
    return 0;
}
