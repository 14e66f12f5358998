// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELCONFIGITEM_H
#define KELCONFIGITEM_H

#include <QString>

/// One named setting: its key in the settings store, its default and its current value, which is the default until it
/// is set or loaded (see KelSettings). A plain value, not tied to the store.
template<class T>
class KelConfigItem
{
public:
    /// An item of that key, with its default as value.
    KelConfigItem(const QString &key, const T &defaultValue)
        : m_key(key)
        , m_defaultValue(defaultValue)
        , m_value(defaultValue)
    {
    }

    /// The key in the settings store.
    [[nodiscard]] const QString &key() const noexcept
    {
        return m_key;
    }

    /// The value as long as nothing else is set or loaded.
    [[nodiscard]] const T &defaultValue() const noexcept
    {
        return m_defaultValue;
    }

    /// The current value.
    [[nodiscard]] const T &value() const noexcept
    {
        return m_value;
    }

    /// Returns whether the value changed.
    bool setValue(const T &value)
    {
        if (m_value == value)
            return false;
        m_value = value;
        return true;
    }

    /// Whether the value equals the default; it may have been set to it.
    [[nodiscard]] bool isDefault() const
    {
        return m_value == m_defaultValue;
    }

private:
    QString m_key;
    T m_defaultValue;
    T m_value;
};

#endif
