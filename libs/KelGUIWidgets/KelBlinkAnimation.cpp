// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelBlinkAnimation.h"

KelBlinkAnimation::KelBlinkAnimation(QObject *parent)
    : QObject(parent)
    , m_timer(this)
{
    m_timer.setInterval(STEP_MS);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &KelBlinkAnimation::step);
}

KelBlinkAnimation::~KelBlinkAnimation() = default;

void KelBlinkAnimation::start()
{
    m_step = 0;
    m_timer.start();
    step();
}

void KelBlinkAnimation::stop()
{
    if (!m_timer.isActive())
        return;
    m_timer.stop();
    Q_EMIT blink(0);
}

bool KelBlinkAnimation::isRunning() const
{
    return m_timer.isActive();
}

void KelBlinkAnimation::step()
{
    ++m_step;
    // The end is settled first: a receiver may start the next sequence.
    if (m_step >= STEPS)
        m_timer.stop();
    Q_EMIT blink(m_step % 2);
}
