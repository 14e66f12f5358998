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
    KelConfigItem(const QString &key, const T &defaultValue)
        : m_key(key)
        , m_defaultValue(defaultValue)
        , m_value(defaultValue)
    {
    }

    [[nodiscard]] const QString &key() const noexcept
    {
        return m_key;
    }

    [[nodiscard]] const T &defaultValue() const noexcept
    {
        return m_defaultValue;
    }

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
