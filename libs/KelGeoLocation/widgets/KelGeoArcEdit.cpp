// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGeoArcEdit.h"

#include <KelGeoArc.h>

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QSpinBox>

#include <cmath>
#include <cstdlib>

namespace
{

constexpr int POSITIVE_HEMISPHERE = 0; // north, east
constexpr int NEGATIVE_HEMISPHERE = 1; // south, west

} // namespace

KelGeoArcEdit::KelGeoArcEdit(QWidget *parent, bool latitude)
    : QWidget(parent)
    , m_degrees(new QSpinBox(this))
    , m_minutes(new QSpinBox(this))
    , m_seconds(new QDoubleSpinBox(this))
    , m_hemisphere(new QComboBox(this))
{
    m_degrees->setRange(-360, 360);
    m_degrees->setSuffix(QStringLiteral("°"));
    m_degrees->setMinimumWidth(60);
    m_degrees->setAccessibleName(tr("Grad"));

    m_minutes->setRange(0, 59);
    m_minutes->setSingleStep(10);
    m_minutes->setSuffix(QStringLiteral("'"));
    m_minutes->setMinimumWidth(50);
    m_minutes->setAccessibleName(tr("Minuten"));

    // The decimals first: a range is rounded to them.
    m_seconds->setDecimals(3);
    m_seconds->setRange(0.0, 59.999);
    m_seconds->setSingleStep(10.0);
    m_seconds->setSuffix(QStringLiteral("\""));
    m_seconds->setMinimumWidth(80);
    m_seconds->setAccessibleName(tr("Sekunden"));

    m_hemisphere->addItem(latitude ? tr("Nord", "COMBOBOX  Coordinate/Nautical bearing")
                                   : tr("Ost", "COMBOBOX  Coordinate/Nautical bearing"));
    m_hemisphere->addItem(latitude ? tr("Süd", "COMBOBOX  Coordinate/Nautical bearing")
                                   : tr("West", "COMBOBOX  Coordinate/Nautical bearing"));
    m_hemisphere->setAccessibleName(tr("Himmelsrichtung"));

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_hemisphere);
    layout->addWidget(m_degrees);
    layout->addWidget(m_minutes);
    layout->addWidget(m_seconds);

    // The keyboard goes through the fields as the eye does.
    setTabOrder(m_hemisphere, m_degrees);
    setTabOrder(m_degrees, m_minutes);
    setTabOrder(m_minutes, m_seconds);
    setFocusProxy(m_hemisphere);
}

void KelGeoArcEdit::setGeoArc(const KelGeoArc &arc)
{
    m_degrees->setValue(std::abs(arc.degree()));
    m_minutes->setValue(std::abs(arc.minute()));
    m_seconds->setValue(std::abs(arc.secondF()));
    // Deliberate: from the whole degrees alone, so −0.5° is shown as a northern or eastern half degree.
    m_hemisphere->setCurrentIndex(arc.degree() < 0 ? NEGATIVE_HEMISPHERE : POSITIVE_HEMISPHERE);
}

KelGeoArc KelGeoArcEdit::geoArc() const
{
    // Deliberate: a negative entry of degrees is not normalised, its sign and that of the hemisphere cancel out.
    const double sign = m_hemisphere->currentIndex() == NEGATIVE_HEMISPHERE ? -1.0 : 1.0;
    return KelGeoArc(sign * m_degrees->value() + (sign * m_minutes->value()) / 60.0
                     + m_seconds->value() * sign / 3600.0);
}
