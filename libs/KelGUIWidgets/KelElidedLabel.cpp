// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelElidedLabel.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>
#include <QStyle>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>

namespace
{

constexpr int HighlightRadius = 3;
constexpr QChar Ellipsis(0x2026);

/// As much of a text as is laid out at most, with an ellipsis if that is not all.
QString bounded(const QString &text)
{
    constexpr int most = KelElidedLabel::MAXIMUM_CHARACTERS;
    return text.size() > most ? text.left(most) + Ellipsis : text;
}

/// One line for the eye: line ends become blanks.
QString asOneLine(QString text)
{
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    text.remove(QLatin1Char('\r'));
    return text;
}

} // namespace

KelElidedLabel::KelElidedLabel(QWidget *parent)
    : QLabel(parent)
{
    // Names of tracks come from foreign files: they are never taken as markup.
    setTextFormat(Qt::PlainText);
}

KelElidedLabel::~KelElidedLabel() = default;

void KelElidedLabel::setFullText(const QString &text)
{
    if (text == m_fullText)
        return;
    m_fullText = text;
    // For those who look at the label as a QLabel, assistive technology for one.
    setText(text);
    updateGeometry();
    updateToolTip();
    update();
}

QString KelElidedLabel::fullText() const
{
    return m_fullText;
}

bool KelElidedLabel::isElided() const
{
    return layOut(textArea().size()).isElided;
}

QStringList KelElidedLabel::visibleLines() const
{
    return layOut(textArea().size()).texts;
}

void KelElidedLabel::setAnimationState(int state)
{
    if (state == m_animationState)
        return;
    m_animationState = state;
    update();
}

QSize KelElidedLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return withFrame(QSize(metrics.horizontalAdvance(asOneLine(bounded(m_fullText))) + 1, metrics.height()));
}

QSize KelElidedLabel::minimumSizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return withFrame(QSize(metrics.horizontalAdvance(Ellipsis) + 1, metrics.height()));
}

int KelElidedLabel::heightForWidth(int width) const
{
    if (!wordWrap())
        return -1;
    const int textWidth = width - withFrame(QSize(0, 0)).width();
    const qsizetype lines = layOut(QSize(textWidth, QWIDGETSIZE_MAX)).texts.size();
    const QFontMetrics metrics = fontMetrics();
    const int between = static_cast<int>(std::max<qsizetype>(lines, 1) - 1) * metrics.lineSpacing();
    return withFrame(QSize(0, between + metrics.height())).height();
}

bool KelElidedLabel::event(QEvent *event)
{
    // Some changes, word wrap for one, are not announced; what counts is the moment when the tool tip is wanted.
    if (event->type() == QEvent::ToolTip)
        updateToolTip();
    return QLabel::event(event);
}

void KelElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawFrame(&painter);
    QPalette::ColorRole role = foregroundRole();
    if (m_animationState != 0) {
        role = QPalette::HighlightedText;
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().brush(QPalette::Active, QPalette::Highlight));
        painter.drawRoundedRect(contentsRect(), HighlightRadius, HighlightRadius);
        painter.restore();
    }
    const QPalette::ColorGroup group = m_animationState != 0 ? QPalette::Active : palette().currentColorGroup();
    painter.setPen(palette().color(group, role));

    const QRect area = textArea();
    const Qt::Alignment all = QStyle::visualAlignment(layoutDirection(), alignment());
    const Qt::Alignment horizontal = all & Qt::AlignHorizontal_Mask;
    painter.drawText(area, static_cast<int>(horizontal | (all & Qt::AlignVertical_Mask)) | Qt::TextExpandTabs,
                     layOut(area.size()).texts.join(QLatin1Char('\n')));
}

void KelElidedLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    updateToolTip();
}

void KelElidedLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        updateGeometry();
        updateToolTip();
    }
}

KelElidedLabel::Lines KelElidedLabel::layOut(const QSize &area) const
{
    if (wordWrap())
        return wrap(area);
    const QString whole = asOneLine(bounded(m_fullText));
    const QString visible = fontMetrics().elidedText(whole, Qt::ElideRight, std::max(area.width(), 0));
    return {{visible}, visible != whole || m_fullText.size() > MAXIMUM_CHARACTERS};
}

KelElidedLabel::Lines KelElidedLabel::wrap(const QSize &area) const
{
    const QFontMetrics metrics = fontMetrics();
    // The gap below the last line is not needed.
    const int fitting = (area.height() + metrics.leading()) / std::max(metrics.lineSpacing(), 1);
    const int maximumLines = std::max(fitting, 1);
    const int width = std::max(area.width(), 0);

    const QString whole = bounded(m_fullText);
    QString text = whole;
    text.replace(QLatin1Char('\n'), QChar::LineSeparator);
    QTextLayout layout(text, font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);

    Lines result;
    result.isElided = m_fullText.size() > MAXIMUM_CHARACTERS;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const int end = line.textStart() + line.textLength();
        if (result.texts.size() + 1 == maximumLines && end < text.size()) {
            result.texts.append(metrics.elidedText(asOneLine(whole.mid(line.textStart())), Qt::ElideRight, width));
            result.isElided = true;
            break;
        }
        QString visible = whole.mid(line.textStart(), line.textLength());
        if (visible.endsWith(QLatin1Char('\n')))
            visible.chop(1);
        result.texts.append(visible.trimmed());
    }
    layout.endLayout();
    return result;
}

QRect KelElidedLabel::textArea() const
{
    const int gap = margin();
    return contentsRect().adjusted(gap, gap, -gap, -gap);
}

QSize KelElidedLabel::withFrame(const QSize &textSize) const
{
    const QSize around = (size() - contentsRect().size()) + QSize(2 * margin(), 2 * margin());
    return textSize + around;
}

void KelElidedLabel::updateToolTip()
{
    // A tool tip takes markup where it sees some.
    const QString whole = Qt::mightBeRichText(m_fullText) ? m_fullText.toHtmlEscaped() : m_fullText;
    const QString wanted = isElided() ? whole : QString();
    if (toolTip() != wanted)
        setToolTip(wanted);
}
