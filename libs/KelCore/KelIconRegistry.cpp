// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelIconRegistry.h"

#include <QAbstractButton>
#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QPointer>
#include <QSvgRenderer>

#include <algorithm>
#include <memory>

namespace
{

QString resourcePath(const QString &name)
{
    return QStringLiteral(":/kel/icons/%1.svg").arg(name);
}

using Drawing = std::shared_ptr<QSvgRenderer>;

/// The drawing of that name, read on first use and shared from then on: a list of ten thousand rows has forty thousand
/// buttons, but four drawings.
Drawing sharedDrawing(const QString &name)
{
    // On the heap and never freed: icons in static objects may outlive everything that is destroyed at the end.
    static auto *const drawings = new QHash<QString, Drawing>;
    Drawing &drawing = (*drawings)[name];
    if (!drawing) {
        drawing = std::make_shared<QSvgRenderer>(resourcePath(name));
        drawing->setAspectRatioMode(Qt::KeepAspectRatio);
    }
    return drawing;
}

/// Paints a one-coloured drawing in the text colour of the palette. Only the opacity of the drawing counts.
class MonochromeSvgIconEngine : public QIconEngine
{
public:
    MonochromeSvgIconEngine(const QString &name, const QAbstractButton *button)
        : m_name(name)
        , m_drawing(sharedDrawing(name))
        , m_button(button)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal density = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        QImage image = draw(rect.size() * density, mode);
        image.setDevicePixelRatio(density);
        painter->drawImage(rect.topLeft(), image);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        return QPixmap::fromImage(draw(size, mode));
    }

    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        const int side = std::min(size.width(), size.height());
        return {side, side};
    }

    QIconEngine *clone() const override
    {
        return new MonochromeSvgIconEngine(*this);
    }

    QString key() const override
    {
        return QStringLiteral("KelMonochromeSvg");
    }

    QString iconName() override
    {
        return m_name;
    }

private:
    QImage draw(const QSize &pixels, QIcon::Mode mode) const
    {
        QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
        if (image.isNull())
            return image;
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        m_drawing->render(&painter, QRectF(image.rect()));
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), colour(mode));
        return image;
    }

    QColor colour(QIcon::Mode mode) const
    {
        const QPalette palette = m_button ? m_button->palette() : QGuiApplication::palette();
        switch (mode) {
        case QIcon::Disabled:
            return palette.color(QPalette::Disabled, QPalette::ButtonText);
        case QIcon::Selected:
            return palette.color(QPalette::Active, QPalette::HighlightedText);
        case QIcon::Normal:
        case QIcon::Active:
            break;
        }
        return palette.color(QPalette::Active, QPalette::ButtonText);
    }

    QString m_name;
    Drawing m_drawing;
    QPointer<const QAbstractButton> m_button;
};

} // namespace

void KelIconRegistry::setIcon(QAbstractButton *button, const QString &name)
{
    if (button)
        button->setIcon(find(name, button));
}

QIcon KelIconRegistry::icon(const QString &name) const
{
    return find(name, nullptr);
}

void KelIconRegistry::registerIcon(const QString &name, const QIcon &icon)
{
    if (icon.isNull())
        m_hostIcons.remove(name);
    else
        m_hostIcons.insert(name, icon);
}

QIcon KelIconRegistry::find(const QString &name, const QAbstractButton *button) const
{
    if (const auto it = m_hostIcons.constFind(name); it != m_hostIcons.constEnd())
        return *it;
    if (QIcon::hasThemeIcon(name))
        return QIcon::fromTheme(name);
    if (QFile::exists(resourcePath(name)))
        return QIcon(new MonochromeSvgIconEngine(name, button));
    return {};
}

// Here, so that programs and plugins that come without any other user of it find one and the same object.
template class KelSingleton<KelIconRegistry>;
