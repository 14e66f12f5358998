// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELDESIGNERWIDGETS_H
#define KELDESIGNERWIDGETS_H

#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <QList>
#include <QObject>

#include <memory>
#include <vector>

class KelDesignerWidget;

/// The plugin: the library's widgets that make sense in a form.
class KelDesignerWidgets : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    explicit KelDesignerWidgets(QObject *parent = nullptr);
    ~KelDesignerWidgets() override;

    [[nodiscard]] QList<QDesignerCustomWidgetInterface *> customWidgets() const override;

private:
    std::vector<std::unique_ptr<KelDesignerWidget>> m_widgets;
};

#endif
