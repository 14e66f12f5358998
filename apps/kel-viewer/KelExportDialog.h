// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELEXPORTDIALOG_H
#define KELEXPORTDIALOG_H

#include <QDialog>
#include <QSize>

class QDoubleSpinBox;
class QSpinBox;

/// Asks how large a picture shall be: its size in points of the map and the factor to pixels.
class KelExportDialog : public QDialog
{
    Q_OBJECT

public:
    explicit KelExportDialog(const QSize &suggested, QWidget *parent = nullptr);

    [[nodiscard]] QSize size() const;
    [[nodiscard]] double scaleFactor() const;

private:
    QSpinBox *m_width;
    QSpinBox *m_height;
    QDoubleSpinBox *m_factor;
};

#endif
