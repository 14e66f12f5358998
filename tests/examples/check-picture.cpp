// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Tells whether a picture is plausible: check-picture FILE WxH|any [COLOUR FROM TO]...
// So many percent of the pixels have that colour.

#include <QColor>
#include <QImage>
#include <QString>
#include <QStringList>

#include <cstdio>

namespace
{

double percentage(const QImage &image, QRgb color)
{
    qsizetype count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == color;
    }
    return 100.0 * double(count) / (double(image.width()) * image.height());
}

} // namespace

int main(int argc, char *argv[])
{
    const QStringList arguments(argv + 1, argv + argc);
    const QImage image(arguments.value(0));
    const QString size = QStringLiteral("%1x%2").arg(image.width()).arg(image.height());
    if (image.isNull() || (arguments.value(1) != QStringLiteral("any") && arguments.value(1) != size)) {
        std::fprintf(stderr, "%s: the picture is %s\n", argv[1], qPrintable(size));
        return 1;
    }
    bool plausible = true;
    for (qsizetype i = 2; i + 2 < arguments.size(); i += 3) {
        const double percent = percentage(image, QColor(arguments.at(i)).rgb());
        if (percent < arguments.at(i + 1).toDouble() || percent > arguments.at(i + 2).toDouble()) {
            std::fprintf(stderr, "%s: %s covers %.3f percent\n", argv[1], qPrintable(arguments.at(i)), percent);
            plausible = false;
        }
    }
    return plausible ? 0 : 1;
}
