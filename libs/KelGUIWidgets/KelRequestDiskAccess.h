// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELREQUESTDISKACCESS_H
#define KELREQUESTDISKACCESS_H

#include <KelGUIWidgetsGlobal.h>
#include <KelSingleton.h>

#include <QString>

#include <functional>

/// What a file is asked for. Files to read and files to write have each their own remembered directory.
enum KelDiskAccessMode {
    Unknown = 0, ///< for whatever
    Read = 1,    ///< to be read
    Write = 2,   ///< to be written
};

/// Asks the user for a file. The one place where the family opens a file dialog, so that hosts (in a sandbox, or with a
/// dialog of their own) and tests can put another one in its place.
///
/// To be used on the user-interface thread.
class KELGUIWIDGETS_EXPORT KelRequestDiskAccess : public KelSingleton<KelRequestDiskAccess>
{
    friend class KelSingleton<KelRequestDiskAccess>;

public:
    /// Shows a dialog with a title and a filter ("Tracks (*.gpx *.kml)", several separated by ";;") and returns the path
    /// of the local file that the user chose, or an empty text if the user cancelled.
    ///
    /// Every mode asks for an existing file. The dialog opens at startPath, a directory or a file; with an empty startPath
    /// where the last file for this mode was chosen, which is remembered in the application's settings. Without a
    /// graphical application there is nobody to ask, and the result is empty.
    virtual QString getOpenFileName(KelDiskAccessMode mode, const QString &filter, const QString &title,
                                    const QString &startPath);

    /// Uses another dialog from now on: a function that returns the chosen path or an empty text. An empty function brings
    /// the usual dialog back.
    void setDialog(std::function<QString(const QString &title, const QString &directory, const QString &filter)> dialog);

protected:
    KelRequestDiskAccess();
    ~KelRequestDiskAccess() override;

private:
    std::function<QString(const QString &, const QString &, const QString &)> m_dialog;
};

#endif
