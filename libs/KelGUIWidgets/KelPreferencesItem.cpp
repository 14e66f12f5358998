// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPreferencesItem.h"

KelPreferencesItem::KelPreferencesItem(KelPreferencesType type) noexcept
    : m_type(type)
{
}

KelPreferencesItem::~KelPreferencesItem() = default;
