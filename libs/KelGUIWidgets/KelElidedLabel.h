// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELELIDEDLABEL_H
#define KELELIDEDLABEL_H

#include <KelGUIWidgetsGlobal.h>

#include <QLabel>
#include <QSize>
#include <QString>
#include <QStringList>

/// A label for text of any length: what does not fit is cut off with an ellipsis, and the whole text is then the tool
/// tip. With word wrap on (QLabel::setWordWrap()), the text takes as many lines as the height allows and the last of
/// them is cut off.
///
/// The text is plain text, never markup. The label asks for the width of its whole text but can shrink to an ellipsis.
/// Its own tool tip is managed by the label; hosts that want another one put it on the widget around it.
class KELGUIWIDGETS_EXPORT KelElidedLabel : public QLabel
{
    Q_OBJECT
    /// The whole text, see setFullText().
    Q_PROPERTY(QString fullText READ fullText WRITE setFullText)

public:
    /// Text beyond so many characters is cut off at any size. The time for a layout grows with the text, and names come
    /// from foreign files.
    static constexpr int MAXIMUM_CHARACTERS = 5000;

    /// An empty label.
    explicit KelElidedLabel(QWidget *parent = nullptr);
    ~KelElidedLabel() override;

    /// Shows that text from now on, line ends as blanks.
    void setFullText(const QString &text);

    /// The text as it was set, whatever part of it is visible.
    [[nodiscard]] QString fullText() const;

    /// Whether something is cut off at the present size.
    [[nodiscard]] bool isElided() const;

    /// The lines as they are painted at the present size.
    [[nodiscard]] QStringList visibleLines() const;

    /// 0 for the normal look; any other state is drawn on the palette's highlight colour, as a selection is, which
    /// stands out from light and dark backgrounds.
    void setAnimationState(int state);

    /// The state that setAnimationState() was given last, 0 at first.
    [[nodiscard]] int animationState() const noexcept
    {
        return m_animationState;
    }

    /// Room for the whole text on one line.
    [[nodiscard]] QSize sizeHint() const override;
    /// Room for the ellipsis.
    [[nodiscard]] QSize minimumSizeHint() const override;
    /// The height that all lines need at that width; -1 without word wrap.
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    /// As the base class; keeps the tool tip up to date.
    bool event(QEvent *event) override;
    /// Paints the visible lines.
    void paintEvent(QPaintEvent *event) override;
    /// Lays the text out anew.
    void resizeEvent(QResizeEvent *event) override;
    /// Lays the text out anew when font or style change.
    void changeEvent(QEvent *event) override;

private:
    struct Lines
    {
        QStringList texts;
        bool isElided = false;
    };

    [[nodiscard]] Lines layOut(const QSize &area) const;
    [[nodiscard]] Lines wrap(const QSize &area) const;
    [[nodiscard]] QRect textArea() const;
    [[nodiscard]] QSize withFrame(const QSize &textSize) const;
    void updateToolTip();

    QString m_fullText;
    int m_animationState = 0;
};

#endif
