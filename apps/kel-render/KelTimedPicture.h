// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTIMEDPICTURE_H
#define KELTIMEDPICTURE_H

#include "KelPictureSource.h"
#include "KelRunStatistics.h"

/// Another picture, and how long it takes to draw it.
class KelTimedPicture : public KelPictureSource
{
public:
    KelTimedPicture(const KelPictureSource &picture, KelRunStatistics &statistics)
        : m_picture(picture)
        , m_statistics(statistics)
    {
    }

    [[nodiscard]] QImage toImage() const override
    {
        const KelRunStatistics::Watch watch(m_statistics, KelRunStatistics::Draw);
        return m_picture.toImage();
    }

    void paint(QPainter &painter) const override
    {
        const KelRunStatistics::Watch watch(m_statistics, KelRunStatistics::Draw);
        m_picture.paint(painter);
    }

private:
    const KelPictureSource &m_picture;
    KelRunStatistics &m_statistics;
};

#endif
