// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSETTINGS_H
#define KELSETTINGS_H

#include <KelConfigItem.h>
#include <KelCoreGlobal.h>

#include <QObject>
#include <QString>

/// Base of the classes that hold settings: moves single items from and to the application's settings store.
///
/// The store is that of a default-constructed QSettings, so the host sets the names of organisation and application
/// (QCoreApplication) before the first item is loaded. Keys may hold "/" for groups. Each call opens the store anew:
/// what another process has saved is seen, what is saved is on disk when the call returns.
///
/// A store that is a pipe, a device or a folder is never opened: see unusableStore().
class KELCORE_EXPORT KelSettings : public QObject
{
    Q_OBJECT

public:
    /// Holds nothing by itself; subclasses hold the items.
    explicit KelSettings(QObject *parent = nullptr);
    ~KelSettings() override;

    /// The file that keeps the user's store from being used because it is no regular file: its absolute path, empty if all
    /// is well. Qt would open it, and wait for ever if it is a pipe. While there is one, items get their defaults and nothing
    /// is saved. A host that uses QSettings itself asks before. Not looked at are stores for all users.
    [[nodiscard]] static QString unusableStore();

    /// Fills the item with what the store holds under its key. Without the key the item gets its default, likewise with
    /// a stored text that is no integer, or a store that cannot be used, which is logged.
    void load(KelConfigItem<bool> &item) const;
    /// As above, for an integer.
    void load(KelConfigItem<int> &item) const;
    /// As above, for a text.
    void load(KelConfigItem<QString> &item) const;

    /// Writes the item's value under its key, the default too. When the store cannot be written, on a full disk for
    /// one, it stays as it was; the failure is logged (KelLogger::logSettings()) and the result is false. Room is looked
    /// for before; a disk that another program fills up in the moment after that is not noticed by Qt.
    bool save(const KelConfigItem<bool> &item) const;
    /// As above, for an integer.
    bool save(const KelConfigItem<int> &item) const;
    /// As above, for a text.
    bool save(const KelConfigItem<QString> &item) const;
};

#endif
