// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELDESIGNERWIDGET_H
#define KELDESIGNERWIDGET_H

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QIcon>
#include <QString>

#include <functional>

/// One widget of ours in the widget box of Qt Designer. Everything about it is given at construction.
class KelDesignerWidget : public QDesignerCustomWidgetInterface
{
public:
    struct Description
    {
        QString className;
        QString objectName; ///< of a new widget
        QString toolTip;
        QString property; ///< that a form sets first, with its value as XML: "<string>Text</string>"
        QString value;
        std::function<QWidget *(QWidget *)> create;
    };

    explicit KelDesignerWidget(Description description);

    [[nodiscard]] QString name() const override { return m_description.className; }
    [[nodiscard]] QString group() const override { return QStringLiteral("KelGeoLocation"); }
    [[nodiscard]] QString toolTip() const override { return m_description.toolTip; }
    [[nodiscard]] QString whatsThis() const override { return m_description.toolTip; }
    [[nodiscard]] QString includeFile() const override;
    [[nodiscard]] QIcon icon() const override { return {}; }
    [[nodiscard]] bool isContainer() const override { return false; }
    [[nodiscard]] QWidget *createWidget(QWidget *parent) override { return m_description.create(parent); }
    [[nodiscard]] QString domXml() const override;

private:
    Description m_description;
};

#endif
