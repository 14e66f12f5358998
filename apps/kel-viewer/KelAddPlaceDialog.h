// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELADDPLACEDIALOG_H
#define KELADDPLACEDIALOG_H

#include <KelGPXTrack.h>

#include <QDialog>

class KelGeoArcEdit;
class QComboBox;
class QDialogButtonBox;
class QGroupBox;
class QLabel;
class QLineEdit;

/// Asks for a place, or for two places and the flight line between them, by degrees or from the sample places.
class KelAddPlaceDialog : public QDialog
{
    Q_OBJECT

public:
    enum Kind { Place, Beeline };

    explicit KelAddPlaceDialog(Kind kind, QWidget *parent = nullptr);

    /// The point or the line, named as typed; valid after the dialog was accepted.
    [[nodiscard]] KelGPXTrack track() const;

private:
    struct PositionEditor
    {
        QComboBox *sample = nullptr;
        KelGeoArcEdit *latitude = nullptr;
        KelGeoArcEdit *longitude = nullptr;

        [[nodiscard]] KelGeoPosition position() const;
    };
    PositionEditor addPosition(const QString &title, int sample);
    void suggestName();
    void validate();

    Kind m_kind;
    QLineEdit *m_name;
    PositionEditor m_from;
    PositionEditor m_to;
    QLabel *m_problem;
    QDialogButtonBox *m_buttons;
    QString m_suggested;
};

#endif
