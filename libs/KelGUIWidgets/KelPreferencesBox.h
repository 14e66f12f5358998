// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPREFERENCESBOX_H
#define KELPREFERENCESBOX_H

#include <KelGUIWidgetsGlobal.h>
#include <KelPreferencesItem.h>

#include <QGroupBox>

class QBoxLayout;

/// A page of the host's preferences dialog: a titled box of editors. Subclasses fill it and override readFromConfig() and
/// writeToConfig(); by themselves these do nothing.
class KELGUIWIDGETS_EXPORT KelPreferencesBox : public QGroupBox, public KelPreferencesItem
{
    Q_OBJECT

public:
    /// An empty box under that title.
    KelPreferencesBox(QWidget *parent, const QString &title, KelPreferencesType type);
    ~KelPreferencesBox() override;

    void readFromConfig() override;
    void writeToConfig() override;

    /// Shows the settings again. A page that applies changes while the user edits overrides this.
    void revert() override;

    /// Every entry is accepted, unless a subclass says otherwise.
    [[nodiscard]] bool mayBeLeft() const override;

    /// Appends the page to the dialog's stack of pages and fills it from the settings. The layout's widget becomes its
    /// parent.
    void stackInto(QBoxLayout *layout);
};

#endif
