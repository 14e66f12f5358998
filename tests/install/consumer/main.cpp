// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// A host as others write it: it draws a track and shares the library's process-wide settings.

#include <KelGPXBeelineCreator.h>
#include <KelGPXTrackRenderer.h>
#include <KelGeoLocation/KelGeoLocationSettings.h>
#include <KelGeoLocation/KelRange.h>
#include <KelGeoPositionRect.h>
#include <KelGeoPositionSamples.h>
#include <KelMapProjection.h>

#include <QGuiApplication>
#include <QImage>

#include <cstdio>

namespace
{

class HostRenderer : public KelGPXTrackRenderer
{
public:
    HostRenderer(const KelGPXTrackSelection &selection, const KelMapProjection &projection, const QSize &size)
        : KelGPXTrackRenderer(selection, size, 1.0)
        , m_projection(projection)
    {
    }

    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        return m_projection.projectate(position);
    }

private:
    KelMapProjection m_projection;
};

int failures = 0;

void check(bool condition, const char *what)
{
    if (!condition) {
        std::fprintf(stderr, "host: %s\n", what);
        ++failures;
    }
}

void drawATrack(const QString &fileName)
{
    const KelGeoPositionSamples &samples = KelSingleton<KelGeoPositionSamples>::instance();
    const KelGeoPosition oldenburg = samples.position(KelGeoPositionSamplesEnum(0));
    const KelGeoPosition passau = samples.position(KelGeoPositionSamplesEnum(12));
    const KelGPXTrack track = KelGPXBeelineCreator(oldenburg, passau).createBeeline(QStringLiteral("Across the country"));

    KelGPXTrackSelection selection;
    selection.addTrack(track);
    const QSize size(400, 300);
    const KelMapProjection projection(selection.boundingBox().withPadding(10.0), size);
    const HostRenderer renderer(selection, projection, size);
    const QImage picture = renderer.render(KelGPXTrackRenderer::Normal);

    check(picture.size() == size, "the picture has the wrong size");
    const QPoint start = projection.projectate(oldenburg).toPoint();
    check(qAlpha(picture.pixel(start)) == 255, "nothing was drawn at the start of the track");
    check(qAlpha(picture.pixel(size.width() - 1, 0)) == 0, "something was drawn beside the track");
    check(picture.save(fileName), "the picture could not be saved");
}

/// The library reads the default configuration through its own code; it must see what the host stored.
void shareTheSettings()
{
    KelGPXTrackConfiguration configuration = KelGPXTrackConfiguration::defaultValue();
    configuration.setLineWidth(KelDistance(3.0));
    KelSingleton<KelGeoLocationSettings>::instance().setDefaultTrackConfiguration(configuration);
    check(KelGPXTrackConfiguration::currentDefaultConfiguration().lineWidth() == KelDistance(3.0),
          "the library and the host have a settings object each");
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    QGuiApplication::setOrganizationName(QStringLiteral("KelHost"));
    QGuiApplication::setApplicationName(QStringLiteral("host"));

    drawATrack(QString::fromLocal8Bit(argc > 1 ? argv[1] : "host.png"));
    shareTheSettings();
    if (failures == 0)
        std::puts("host: the track was drawn, the settings are shared");
    return failures == 0 ? 0 : 1;
}
