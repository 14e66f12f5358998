// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELICONREGISTRY_H
#define KELICONREGISTRY_H

#include <KelCoreGlobal.h>
#include <KelSingleton.h>

#include <QHash>
#include <QIcon>
#include <QString>

class QAbstractButton;

/// The icons of the family, by name. A name is looked up first among those that the host set with registerIcon(), then
/// in the desktop's icon theme, then among the built-in ones: "ico_editListItem", "ico_deleteListItem", "ico_fit_map"
/// and "ico_add_route".
///
/// The built-in icons are drawings in one colour. They are painted anew for every size and screen density, in the text
/// colour of the palette that holds at that moment, so they suit light and dark desktops and follow a change.
/// Each is read once and shared by all who show it, so that icons may be given to buttons by the thousand.
///
/// To be used on the user-interface thread.
class KELCORE_EXPORT KelIconRegistry : public KelSingleton<KelIconRegistry>
{
    friend class KelSingleton<KelIconRegistry>;

public:
    /// Sets the icon of that name on the button; a built-in one follows the button's own palette. A name that nobody
    /// knows removes the button's icon. A null button is ignored.
    void setIcon(QAbstractButton *button, const QString &name);

    /// The icon of that name, a built-in one in the colours of the application's palette; a null icon for a name that
    /// nobody knows.
    [[nodiscard]] QIcon icon(const QString &name) const;

    /// Lets the host bring its own icon for a name; a null icon takes it back.
    void registerIcon(const QString &name, const QIcon &icon);

protected:
    KelIconRegistry() = default;
    ~KelIconRegistry() override = default;

private:
    [[nodiscard]] QIcon find(const QString &name, const QAbstractButton *button) const;

    QHash<QString, QIcon> m_hostIcons;
};

#endif
