// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelProblemBar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr int VISIBLE_LINES = 4;

} // namespace

KelProblemBar::KelProblemBar(QWidget *parent)
    : QFrame(parent)
    , m_title(new QLabel(this))
    , m_text(new QPlainTextEdit(this))
{
    setFrameShape(StyledPanel);
    setAccessibleName(tr("Probleme"));
    auto *icon = new QLabel(this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(24, 24));
    auto *close = new QPushButton(tr("&Verwerfen"), this);
    close->setObjectName(QStringLiteral("closeProblems"));
    connect(close, &QPushButton::clicked, this, &KelProblemBar::clear);

    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_text->setAccessibleName(tr("Was schiefging"));

    auto *top = new QHBoxLayout;
    top->addWidget(icon);
    top->addWidget(m_title, 1);
    top->addWidget(close);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->addLayout(top);
    layout->addWidget(m_text);
    hide();
}

void KelProblemBar::add(const KelErrorHistory &errors)
{
    for (const KelErrorHistory::Entry &entry : errors.entries())
        add(entry.toString());
}

void KelProblemBar::add(const QString &message)
{
    ++m_count;
    m_title->setText(tr("%n Problem(e)", nullptr, m_count));
    m_text->appendPlainText(message);
    const int lines = std::min(m_count, VISIBLE_LINES);
    m_text->setFixedHeight(m_text->fontMetrics().lineSpacing() * (lines + 1) + 2 * m_text->frameWidth() + 8);
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QString KelProblemBar::text() const
{
    return m_text->toPlainText();
}

void KelProblemBar::clear()
{
    m_count = 0;
    m_text->clear();
    hide();
}
