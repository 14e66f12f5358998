// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPICTURESHEET_H
#define KELPICTURESHEET_H

#include <QColor>
#include <QImage>
#include <QList>
#include <QString>

/// Pictures in rows and columns, each with a caption below it. Columns and rows are as wide and high as they need.
class KelPictureSheet
{
public:
    explicit KelPictureSheet(int columns);

    void add(const QString &caption, const QImage &picture);

    /// With a palette of at most 256 colours, which is plenty for drawings and keeps the file small.
    [[nodiscard]] bool save(const QString &path) const;

private:
    struct Cell
    {
        QString caption;
        QImage picture;
    };

    [[nodiscard]] QList<int> columnWidths() const;
    [[nodiscard]] QList<int> rowHeights() const;

    int m_columns;
    QList<Cell> m_cells;
};

#endif
