// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSTYLEEDITOR_H
#define KELSTYLEEDITOR_H

#include <KelGPXConfiguredTrack.h>
#include <KelGPXFullShapeListModel.h>
#include <KelGPXTrackConfiguration.h>

#include <QWidget>

#include <functional>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLineEdit;
class QPushButton;
class QSpinBox;

/// Edits the selected track's name and how the selected tracks are drawn: the ten values of a track configuration.
///
/// With several tracks the values of the first are shown; a change of one value changes that value alone in
/// all of them.
class KelStyleEditor : public QWidget
{
    Q_OBJECT

public:
    explicit KelStyleEditor(QWidget *parent = nullptr);

    /// Shows the style of the first track; without tracks the editor is disabled.
    void setTracks(const QList<KelGPXConfiguredTrack> &tracks);
    /// Lets the user type a new name over the old one.
    void editName();

Q_SIGNALS:
    /// The user gave the one shown track another name.
    void renamed(const QString &name);
    /// The user changed one value: \a change applies it to any configuration, \a text names the step.
    void edited(const std::function<void(KelGPXTrackConfiguration &)> &change, const QString &text);
    /// The shown style shall be that of tracks to come.
    void defaultRequested(const KelGPXTrackConfiguration &configuration);

private:
    void show(const KelGPXTrackConfiguration &configuration);
    void fillShapes(const KelGPXConfiguredTrack &track);
    void createForm();
    void connectFields();
    void apply(const std::function<void(KelGPXTrackConfiguration &)> &change, const QString &text);
    void chooseColor(bool fill);
    void setButtonColor(QPushButton *button, const QColor &color);

    KelGPXTrackConfiguration m_shown;
    bool m_showing = false; ///< widgets are being filled: their signals are no edits

    QLineEdit *m_name;
    QString m_shownName;
    QPushButton *m_lineColor;
    QDoubleSpinBox *m_lineWidth;
    QComboBox *m_penStyle;
    QPushButton *m_fillColor;
    QDoubleSpinBox *m_haloWidth;
    QCheckBox *m_stroke;
    QCheckBox *m_fill;
    QComboBox *m_shape;
    KelGPXFullShapeListModel m_shapes;
    QSpinBox *m_smoothingStrength;
    QSpinBox *m_smoothingSteps;
    QPushButton *m_asDefault;
};

#endif
