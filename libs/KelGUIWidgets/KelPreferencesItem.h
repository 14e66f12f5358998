// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPREFERENCESITEM_H
#define KELPREFERENCESITEM_H

#include <KelGUIWidgetsGlobal.h>

/// Where the host's preferences dialog puts a page.
enum class KelPreferencesType {
    General = 0, ///< for every user
    Expert = 1, ///< shown on demand
};

/// What a preferences dialog asks of each of its pages. The dialog calls readFromConfig() when it shows the page,
/// mayBeLeft() and then writeToConfig() when the user accepts, revert() when the user cancels.
class KELGUIWIDGETS_EXPORT KelPreferencesItem
{
public:
    /// A page for these users.
    explicit KelPreferencesItem(KelPreferencesType type = KelPreferencesType::General) noexcept;
    virtual ~KelPreferencesItem();

    KelPreferencesItem(const KelPreferencesItem &) = delete;
    KelPreferencesItem &operator=(const KelPreferencesItem &) = delete;

    /// Shows the current settings.
    virtual void readFromConfig() = 0;

    /// Puts what is shown into the settings and saves them.
    virtual void writeToConfig() = 0;

    /// Drops what the user entered and shows the settings again; undoes what a page has already applied.
    virtual void revert() = 0;

    /// Whether what is entered can be accepted; a page that says no shows the user why.
    [[nodiscard]] virtual bool mayBeLeft() const = 0;

    /// For whom the page is.
    [[nodiscard]] KelPreferencesType type() const noexcept
    {
        return m_type;
    }

private:
    KelPreferencesType m_type;
};

#endif
