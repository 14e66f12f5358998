// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELDIRHASH_H
#define KELDIRHASH_H

#include <QDir>
#include <QHash>
#include <QString>

#include <cstddef>

/// Hash of a directory, so that directories can be kept in a QSet or be part of a key; Qt 6.4 has none.
///
/// Consistent with QDir::operator==, which calls two directories equal when they are the same place on disk, however
/// their paths are spelled: an existing directory hashes by its canonical path, any other by its absolute path. Name
/// filters and sorting, which the operator also compares, are left out; equal directories still hash alike.
/// A directory that is created or removed while it is a key of a table is no longer found in it.
inline size_t qHash(const QDir &dir, size_t seed = 0)
{
    return qHash(dir.exists() ? dir.canonicalPath() : dir.absolutePath(), seed);
}

#endif
