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

public:
    /// Text beyond so many characters is cut off at any size. The time for a layout grows with the text, and names come
    /// from foreign files.
    static constexpr int MAXIMUM_CHARACTERS = 5000;

    explicit KelElidedLabel(QWidget *parent = nullptr);
    ~KelElidedLabel() override;

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

    [[nodiscard]] int animationState() const noexcept
    {
        return m_animationState;
    }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
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
