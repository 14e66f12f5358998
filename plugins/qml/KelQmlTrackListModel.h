// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELQMLTRACKLISTMODEL_H
#define KELQMLTRACKLISTMODEL_H

#include "KelQmlTrack.h"

#include <KelGPXTrackListModel.h>

#include <QByteArray>
#include <QHash>
#include <QUrl>
#include <QtQmlIntegration>

/// A list of tracks for the views of QML: `TrackListModel`. Its roles are name, description, track, lineColor and
/// fillColor.
class KelQmlTrackListModel : public KelGPXTrackListModel
{
    Q_OBJECT
    QML_NAMED_ELEMENT(TrackListModel)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { NameRole = Qt::UserRole + 1,
                DescriptionRole,
                TrackRole,
                LineColorRole,
                FillColorRole };

    explicit KelQmlTrackListModel(QObject *parent = nullptr);

    [[nodiscard]] int count() const { return rowCount(); }
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Appends the tracks of a GPX, KML or KMZ file; false if it gives none.
    Q_INVOKABLE bool load(const QUrl &file);
    /// Appends the track with the user's default style.
    Q_INVOKABLE void append(const KelQmlTrack &track);
    Q_INVOKABLE void removeAt(int row);
    Q_INVOKABLE void clear();
    /// An invalid track for a row that does not exist.
    Q_INVOKABLE [[nodiscard]] KelQmlTrack get(int row) const;

Q_SIGNALS:
    void countChanged();
};

#endif
