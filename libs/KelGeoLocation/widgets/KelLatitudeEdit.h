// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELLATITUDEEDIT_H
#define KELLATITUDEEDIT_H

#include <KelGeoArcEdit.h>
#include <KelGeoLocationGlobal.h>

/// The editor of a latitude for forms that are drawn in Qt Designer, which makes widgets from their parent alone and knows
/// them by their properties. What it shows and reads is that of KelGeoArcEdit.
class KELGEOLOCATION_EXPORT KelLatitudeEdit : public KelGeoArcEdit
{
    Q_OBJECT
    /// The angle in decimal degrees.
    Q_PROPERTY(double decimalDegrees READ decimalDegrees WRITE setDecimalDegrees USER true)

public:
    /// An editor at 0°.
    explicit KelLatitudeEdit(QWidget *parent = nullptr);
    ~KelLatitudeEdit() override;

    /// The angle that is shown, in decimal degrees: geoArc().
    [[nodiscard]] double decimalDegrees() const;
    /// Shows a latitude by the rules of setGeoArc().
    void setDecimalDegrees(double decimalDegrees);
};

#endif
