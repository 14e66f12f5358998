// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELQMLPOSITION_H
#define KELQMLPOSITION_H

#include <KelGeoPosition.h>

#include <QString>
#include <QtQmlIntegration>

/// A KelGeoPosition for QML: the value type `geoPosition`. Made by the singleton Geo.
class KelQmlPosition
{
    Q_GADGET
    QML_VALUE_TYPE(geoPosition)
    /// Decimal degrees; 720 is invalid.
    Q_PROPERTY(double latitude READ latitude WRITE setLatitude)
    Q_PROPERTY(double longitude READ longitude WRITE setLongitude)
    Q_PROPERTY(bool valid READ isValid)

public:
    KelQmlPosition() = default;
    explicit KelQmlPosition(const KelGeoPosition &position)
        : m_position(position)
    {
    }

    [[nodiscard]] const KelGeoPosition &position() const noexcept { return m_position; }

    [[nodiscard]] double latitude() const { return m_position.latitude().decimalDegrees(); }
    void setLatitude(double degrees) { m_position.setLatitude(KelLatitude(degrees)); }
    [[nodiscard]] double longitude() const { return m_position.longitude().decimalDegrees(); }
    void setLongitude(double degrees) { m_position.setLongitude(KelLongitude(degrees)); }
    [[nodiscard]] bool isValid() const { return m_position.isValid(); }

    /// Kilometres along the great circle.
    Q_INVOKABLE [[nodiscard]] double distanceTo(const KelQmlPosition &other) const;
    /// This position moved by kilometres.
    Q_INVOKABLE [[nodiscard]] KelQmlPosition movedBy(double northKm, double eastKm) const;
    /// "N53.14375000; E8.21400000".
    Q_INVOKABLE [[nodiscard]] QString toString() const;
    /// Degrees, minutes and seconds, as rich text.
    Q_INVOKABLE [[nodiscard]] QString toDegreeText() const;

    [[nodiscard]] bool operator==(const KelQmlPosition &other) const { return m_position == other.m_position; }

private:
    KelGeoPosition m_position;
};

#endif
