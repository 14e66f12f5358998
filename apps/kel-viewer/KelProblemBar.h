// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPROBLEMBAR_H
#define KELPROBLEMBAR_H

#include <KelErrorHistory.h>

#include <QFrame>

class QLabel;
class QPlainTextEdit;
class QPushButton;

/// Shows above the map what went wrong, where the user looks: file, line, column and reason of each problem,
/// until it is closed.
class KelProblemBar : public QFrame
{
    Q_OBJECT

public:
    explicit KelProblemBar(QWidget *parent = nullptr);

    void add(const KelErrorHistory &errors);
    void add(const QString &message);
    [[nodiscard]] QString text() const;

public Q_SLOTS:
    void clear();

private:
    QLabel *m_title;
    QPlainTextEdit *m_text;
    int m_count = 0;
};

#endif
