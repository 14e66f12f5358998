// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDesignerWidgets.h"

#include "KelDesignerWidget.h"

#include <KelElidedLabel.h>
#include <KelLatitudeEdit.h>
#include <KelLongitudeEdit.h>

namespace
{

template<class Widget>
QWidget *create(QWidget *parent)
{
    return new Widget(parent);
}

} // namespace

KelDesignerWidgets::KelDesignerWidgets(QObject *parent)
    : QObject(parent)
{
    const auto add = [this](const KelDesignerWidget::Description &description) {
        m_widgets.push_back(std::make_unique<KelDesignerWidget>(description));
    };
    const QString degrees = QStringLiteral("decimalDegrees");
    const QString zero = QStringLiteral("<double>0</double>");
    add({QStringLiteral("KelLatitudeEdit"), QStringLiteral("latitudeEdit"), QStringLiteral("Editor of a latitude"),
         degrees, zero, create<KelLatitudeEdit>});
    add({QStringLiteral("KelLongitudeEdit"), QStringLiteral("longitudeEdit"), QStringLiteral("Editor of a longitude"),
         degrees, zero, create<KelLongitudeEdit>});
    add({QStringLiteral("KelElidedLabel"), QStringLiteral("elidedLabel"),
         QStringLiteral("Label that shortens what does not fit"), QStringLiteral("fullText"),
         QStringLiteral("<string>Text</string>"), create<KelElidedLabel>});
}

KelDesignerWidgets::~KelDesignerWidgets() = default;

QList<QDesignerCustomWidgetInterface *> KelDesignerWidgets::customWidgets() const
{
    QList<QDesignerCustomWidgetInterface *> widgets;
    for (const auto &widget : m_widgets)
        widgets.append(widget.get());
    return widgets;
}
