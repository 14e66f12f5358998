// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELBLINKANIMATION_H
#define KELBLINKANIMATION_H

#include <KelGUIWidgetsGlobal.h>

#include <QObject>
#include <QTimer>

/// Draws the user's eye to something by a short blink: three times on and off within 0.7 seconds, then rest. The animation
/// paints nothing; it tells its state to whoever does.
///
/// Lives on the thread of its parent, usually the user-interface thread, and needs an event loop there.
class KELGUIWIDGETS_EXPORT KelBlinkAnimation : public QObject
{
    Q_OBJECT

public:
    /// Number of states of one sequence, 1, 0, 1, 0, 1, 0.
    static constexpr int STEPS = 6;
    /// Milliseconds from one state to the next.
    static constexpr int STEP_MS = 120;

    /// At rest.
    explicit KelBlinkAnimation(QObject *parent = nullptr);
    ~KelBlinkAnimation() override;

    /// Starts the sequence, from its beginning if it is running. Its first state is emitted before this returns.
    void start();

    /// Ends a running sequence and emits state 0; does nothing, and emits nothing, if none is running.
    void stop();

    /// Whether a sequence is running.
    [[nodiscard]] bool isRunning() const;

Q_SIGNALS:
    /// The state to show: 1 for highlighted, 0 for normal. The last state of every sequence is 0.
    void blink(int state);

private:
    void step();

    QTimer m_timer;
    int m_step = 0;
};

#endif
