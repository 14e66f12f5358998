// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPictureSheet.h"

#include <QFont>
#include <QFontMetrics>
#include <QHash>
#include <QPainter>

#include <algorithm>
#include <numeric>

namespace
{

constexpr int MARGIN = 12;
constexpr int CAPTION = 20;

QFont captionFont()
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(12);
    return font;
}

/// At most 256, of which drawings have few and the rest lies on smooth edges.
QList<QRgb> mostFrequentColors(const QImage &image)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    }
    QList<QRgb> colors = counts.keys();
    std::sort(colors.begin(), colors.end(), [&counts](QRgb a, QRgb b) {
        return counts.value(a) != counts.value(b) ? counts.value(a) > counts.value(b) : a < b;
    });
    return colors.first(std::min<qsizetype>(colors.size(), 256));
}

} // namespace

KelPictureSheet::KelPictureSheet(int columns)
    : m_columns(columns)
{
}

void KelPictureSheet::add(const QString &caption, const QImage &picture)
{
    m_cells.append({caption, picture});
}

QList<int> KelPictureSheet::columnWidths() const
{
    const QFontMetrics metrics(captionFont());
    QList<int> widths(m_columns, 0);
    for (qsizetype i = 0; i < m_cells.size(); ++i) {
        const int needed = std::max(m_cells.at(i).picture.width(), metrics.horizontalAdvance(m_cells.at(i).caption));
        widths[i % m_columns] = std::max(widths.at(i % m_columns), needed);
    }
    return widths;
}

QList<int> KelPictureSheet::rowHeights() const
{
    QList<int> heights((m_cells.size() + m_columns - 1) / m_columns, 0);
    for (qsizetype i = 0; i < m_cells.size(); ++i)
        heights[i / m_columns] = std::max(heights.at(i / m_columns), m_cells.at(i).picture.height() + CAPTION);
    return heights;
}

bool KelPictureSheet::save(const QString &path) const
{
    const QList<int> widths = columnWidths();
    const QList<int> heights = rowHeights();
    const int width = std::accumulate(widths.begin(), widths.end(), MARGIN) + MARGIN * m_columns;
    const int height = std::accumulate(heights.begin(), heights.end(), MARGIN) + MARGIN * int(heights.size());
    QImage sheet(width, height, QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    painter.setFont(captionFont());
    painter.setPen(QColor(0x40, 0x48, 0x50));
    int y = MARGIN;
    for (qsizetype i = 0, row = 0; row < heights.size(); y += heights.at(row++) + MARGIN) {
        int x = MARGIN;
        for (int column = 0; column < m_columns && i < m_cells.size(); ++column, ++i) {
            const Cell &cell = m_cells.at(i);
            const QRect place(x, y, widths.at(column), heights.at(row));
            painter.drawImage(x + (place.width() - cell.picture.width()) / 2, y, cell.picture);
            painter.drawText(place, Qt::AlignHCenter | Qt::AlignBottom, cell.caption);
            x += place.width() + MARGIN;
        }
    }
    painter.end();
    const Qt::ImageConversionFlags nearest = Qt::ThresholdDither | Qt::AvoidDither;
    return sheet.convertToFormat(QImage::Format_Indexed8, mostFrequentColors(sheet), nearest).save(path, "PNG", 0);
}
