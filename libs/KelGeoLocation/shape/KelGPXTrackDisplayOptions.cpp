// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackDisplayOptions.h"

#include <KelXMLBuilder.h>

#include <QDomElement>

namespace
{

QString displayOptionsElement()
{
    return QStringLiteral("displayOptions");
}

} // namespace

KelGPXTrackDisplayOptions::KelGPXTrackDisplayOptions()
    : KelEnumWrapper(DisplayNone)
{
}

KelGPXTrackDisplayOptions::KelGPXTrackDisplayOptions(KelGPXTrackDisplayOptionsEnum option)
    : KelEnumWrapper(option)
{
}

KelGPXTrackDisplayOptions::KelGPXTrackDisplayOptions(int bits)
    : KelEnumWrapper(bits)
{
}

KelGPXTrackDisplayOptions::KelGPXTrackDisplayOptions(const QString &keys)
    : KelGPXTrackDisplayOptions()
{
    setValue(enumToStringTable()->decodeCSV(keys));
}

KelGPXTrackDisplayOptions::~KelGPXTrackDisplayOptions() = default;

void KelGPXTrackDisplayOptions::fillTable(KelEnumToStringTable<KelGPXTrackDisplayOptionsEnum> *table) const
{
    // Deliberate: DisplayExtra gets no key. It is offered for some shapes only and is not to be stored.
    table->insert(QStringLiteral("stroke"), DisplayStroke);
    table->insert(QStringLiteral("fill"), DisplayFill);
}

void KelGPXTrackDisplayOptions::fromXml(const QDomElement &parent)
{
    const QDomElement element = parent.firstChildElement(displayOptionsElement());
    *this = element.isNull() ? KelGPXTrackDisplayOptions(DisplayStroke) : KelGPXTrackDisplayOptions(element.text());
}

void KelGPXTrackDisplayOptions::write(QDomElement &parent) const
{
    KelXMLBuilder::buildDomElement(parent, displayOptionsElement(), encode());
}
