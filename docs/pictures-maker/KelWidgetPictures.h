// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELWIDGETPICTURES_H
#define KELWIDGETPICTURES_H

#include <QDir>

class QWidget;

/// Every widget of the library, light and dark.
class KelWidgetPictures
{
public:
    explicit KelWidgetPictures(const QDir &folder);

    [[nodiscard]] bool drawAll() const;

private:
    /// The widget that the function makes, once in each palette, side by side.
    template<class Make>
    [[nodiscard]] bool draw(const QString &name, Make make) const;

    QDir m_folder;
};

#endif
