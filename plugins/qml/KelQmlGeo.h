// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELQMLGEO_H
#define KELQMLGEO_H

#include "KelQmlPosition.h"
#include "KelQmlTrack.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

/// Makes the values of the module: the singleton `Geo`.
class KelQmlGeo : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(Geo)
    QML_SINGLETON

public:
    explicit KelQmlGeo(QObject *parent = nullptr);

    /// The position at decimal degrees, north and east positive.
    Q_INVOKABLE [[nodiscard]] KelQmlPosition position(double latitude, double longitude) const;
    /// Reads "N53.1 E8.2" or "53,8,30 N; 8,12,0 E"; an invalid position for any other text.
    Q_INVOKABLE [[nodiscard]] KelQmlPosition parsePosition(const QString &text) const;
    /// The great circle between two positions.
    Q_INVOKABLE [[nodiscard]] KelQmlTrack beeline(const KelQmlPosition &from, const KelQmlPosition &to,
                                                  const QString &name) const;
};

#endif
