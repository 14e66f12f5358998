// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELLONGITUDEEDIT_H
#define KELLONGITUDEEDIT_H

#include <KelGeoArcEdit.h>
#include <KelGeoLocationGlobal.h>

/// The editor of a longitude for forms that are drawn in Qt Designer, which makes widgets from their parent alone and knows
/// them by their properties. What it shows and reads is that of KelGeoArcEdit.
class KELGEOLOCATION_EXPORT KelLongitudeEdit : public KelGeoArcEdit
{
    Q_OBJECT
    /// The angle in decimal degrees.
    Q_PROPERTY(double decimalDegrees READ decimalDegrees WRITE setDecimalDegrees USER true)

public:
    explicit KelLongitudeEdit(QWidget *parent = nullptr);
    ~KelLongitudeEdit() override;

    [[nodiscard]] double decimalDegrees() const;
    void setDecimalDegrees(double decimalDegrees);
};

#endif
