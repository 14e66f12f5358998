// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELOWNMAPDIALOG_H
#define KELOWNMAPDIALOG_H

#include <KelGeoPositionRect.h>

#include <QDialog>
#include <QImage>

class KelGeoArcEdit;
class QDialogButtonBox;
class QLabel;
class QLineEdit;

/// Asks for a map picture in Mercator projection and the coordinates of its edges.
class KelOwnMapDialog : public QDialog
{
    Q_OBJECT

public:
    explicit KelOwnMapDialog(QWidget *parent = nullptr);

    [[nodiscard]] QImage image() const { return m_image; }
    [[nodiscard]] KelGeoPositionRect bounds() const;

private:
    void chooseFile();
    void validate();

    QImage m_image;
    QLineEdit *m_file;
    KelGeoArcEdit *m_south;
    KelGeoArcEdit *m_west;
    KelGeoArcEdit *m_north;
    KelGeoArcEdit *m_east;
    QLabel *m_problem;
    QDialogButtonBox *m_buttons;
};

#endif
