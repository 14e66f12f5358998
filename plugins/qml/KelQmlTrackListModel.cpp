// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelQmlTrackListModel.h"

#include <KelGPXConfiguredTrack.h>
#include <KelGPXTrackSelection.h>
#include <KelTrackSelectionFactory.h>

KelQmlTrackListModel::KelQmlTrackListModel(QObject *parent)
    : KelGPXTrackListModel(parent)
{
    // Tracks come and go with a reset.
    connect(this, &QAbstractItemModel::modelReset, this, &KelQmlTrackListModel::countChanged);
}

QVariant KelQmlTrackListModel::data(const QModelIndex &index, int role) const
{
    if (role <= Qt::UserRole || !index.isValid())
        return KelGPXTrackListModel::data(index, role);
    const KelGPXConfiguredTrack track = trackAt(index);
    switch (role) {
    case NameRole:
        return track.name();
    case DescriptionRole:
        return track.track().description();
    case TrackRole:
        return QVariant::fromValue(KelQmlTrack(track.track()));
    case LineColorRole:
        return track.lineColor();
    case FillColorRole:
        return track.fillColor();
    default:
        return {};
    }
}

QHash<int, QByteArray> KelQmlTrackListModel::roleNames() const
{
    QHash<int, QByteArray> names = KelGPXTrackListModel::roleNames();
    names.insert({{NameRole, "name"},
                  {DescriptionRole, "description"},
                  {TrackRole, "track"},
                  {LineColorRole, "lineColor"},
                  {FillColorRole, "fillColor"}});
    return names;
}

bool KelQmlTrackListModel::load(const QUrl &file)
{
    const KelTrackSelectionFactory &factory = KelTrackSelectionFactory::instance();
    if (!factory.supportsFile(file))
        return false;
    const KelGPXConfiguredTrackList tracks = factory.createConfiguredTrackList(file);
    if (tracks.count() == 0)
        return false;
    addTracks(tracks);
    return true;
}

void KelQmlTrackListModel::append(const KelQmlTrack &track)
{
    KelGPXTrackSelection one;
    one.addTrack(track.track());
    addTracks(one.tracks());
}

void KelQmlTrackListModel::removeAt(int row)
{
    remove(index(row, 0));
}

void KelQmlTrackListModel::clear()
{
    setSelection(KelGPXTrackSelection());
}

KelQmlTrack KelQmlTrackListModel::get(int row) const
{
    return isValidRow(row) ? KelQmlTrack(trackAt(row).track()) : KelQmlTrack();
}
