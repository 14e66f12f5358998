// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPREFERENCESDIALOG_H
#define KELPREFERENCESDIALOG_H

#include <QDialog>

class KelPreferencesGeoLocation;

/// The preferences: the library's page and the buttons around it.
class KelPreferencesDialog : public QDialog
{
    Q_OBJECT

public:
    explicit KelPreferencesDialog(QWidget *parent = nullptr);

    void accept() override;

private:
    KelPreferencesGeoLocation *m_page;
};

#endif
