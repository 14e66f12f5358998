// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGEOARCEDIT_H
#define KELGEOARCEDIT_H

#include <KelGeoLocationGlobal.h>

#include <QWidget>

class QComboBox;
class QDoubleSpinBox;
class QSpinBox;

class KelGeoArc;

/// A compact editor for one angle: hemisphere, degrees, minutes and seconds side by side.
///
/// One editor serves a latitude ("Nord", "Süd") or a longitude ("Ost", "West"). Degrees go from −360 to 360, minutes
/// from 0 to 59, seconds from 0 to 59.999 in thousandths; what lies outside, an invalid angle included, is shown as the
/// nearest of these. The degrees take a sign although the hemisphere gives one, too: with "Süd" or "West" a negative
/// entry becomes positive.
class KELGEOLOCATION_EXPORT KelGeoArcEdit : public QWidget
{
    Q_OBJECT

public:
    /// An editor at 0°, for a latitude or else for a longitude.
    explicit KelGeoArcEdit(QWidget *parent, bool latitude);

    /// Shows the magnitudes of the angle's degree(), minute() and secondF(). The hemisphere is taken from degree()
    /// alone: an angle between −1° and 0° (exclusive) is shown, and read back, as a northern or eastern one.
    void setGeoArc(const KelGeoArc &arc);

    /// The angle in the editor, in decimal degrees: sign × (degrees + minutes / 60 + seconds / 3600), the sign being
    /// that of the hemisphere.
    [[nodiscard]] KelGeoArc geoArc() const;

private:
    QSpinBox *m_degrees;
    QSpinBox *m_minutes;
    QDoubleSpinBox *m_seconds;
    QComboBox *m_hemisphere;
};

#endif
