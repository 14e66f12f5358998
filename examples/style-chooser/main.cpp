// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Chooses shape, marker, width and painted parts of a track and shows at once what it looks like.
//   style-chooser [--screenshot chooser.png]

#include <KelGPXFullShapeListModel.h>
#include <KelGPXTrackRenderer.h>
#include <KelGeoPositionRect.h>
#include <KelMapProjection.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>
#include <QTranslator>

struct Renderer : KelGPXTrackRenderer
{
    Renderer(const KelGPXTrackSelection &selection, const QSize &size)
        : KelGPXTrackRenderer(selection, size, 1.0)
        , m_projection(selection.boundingBox().withPadding(30), size)
    {
    }
    QPointF projectPosition(const KelGeoPosition &position) const override { return m_projection.projectate(position); }
    KelMapProjection m_projection;
};

KelGPXConfiguredTrack sampleTrack()
{
    const QString area = "8.20,53.14 8.22,53.16 8.25,53.15 8.26,53.13 8.22,53.12 8.20,53.14";
    const KelGPXTrack track = KelGPXTrack::decodeKml("Sample", "", area, TrackShapePolygon);
    return KelGPXConfiguredTrack(track, KelGPXTrackConfiguration::defaultValue());
}

class StyleChooser : public QWidget
{
public:
    StyleChooser()
    {
        auto *layout = new QFormLayout(this);
        m_model.fill(m_track.naturalShape());
        m_shapes.setModel(&m_model);
        m_width.setValue(6);
        m_stroke.setChecked(true);
        layout->addRow("Shape", &m_shapes);
        layout->addRow("Line width", &m_width);
        layout->addRow(&m_stroke);
        layout->addRow(&m_fill);
        layout->addRow(&m_preview);
        connect(&m_shapes, &QComboBox::currentIndexChanged, this, &StyleChooser::refresh);
        connect(&m_width, &QSpinBox::valueChanged, this, &StyleChooser::refresh);
        connect(&m_stroke, &QCheckBox::toggled, this, &StyleChooser::refresh);
        connect(&m_fill, &QCheckBox::toggled, this, &StyleChooser::refresh);
        m_shapes.setCurrentIndex(m_model.rowCount() - 1); // the polygon as such
        m_fill.setChecked(true);
        refresh();
    }

    //! [refresh]
    void refresh()
    {
        const KelGPXTrackDisplayOptions options((m_stroke.isChecked() ? DisplayStroke : 0) | (m_fill.isChecked() ? DisplayFill : 0));
        KelGPXTrackConfiguration style = m_track.configuration();
        const KelGPXFullShape shape = m_model.markerAt(m_shapes.currentIndex());
        style.setTrackShape(shape.trackShape());
        style.setMarkerShape(shape.markerShape());
        style.setLineWidth(m_width.value());
        style.setCurrentDisplayOptions(options);
        m_track.setConfiguration(style);

        // The icons of the list follow the style.
        m_model.setStrokeColor(style.lineColor());
        m_model.setFillColor(style.fillColor());
        m_model.setDisplayOptions(options);
        const KelGPXTrackSelection selection{KelGPXConfiguredTrackList(m_track)};
        m_preview.setPixmap(QPixmap::fromImage(Renderer(selection, {260, 160}).render(KelGPXTrackRenderer::Normal)));
    }
    //! [refresh]

private:
    KelGPXConfiguredTrack m_track = sampleTrack();
    KelGPXFullShapeListModel m_model;
    QComboBox m_shapes;
    QSpinBox m_width;
    QCheckBox m_stroke{"Line"}, m_fill{"Area"};
    QLabel m_preview;
};

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    //! [texts]
    QTranslator english;
    if (english.load("kelgeolocation_en", KEL_TRANSLATIONS))
        QApplication::installTranslator(&english);
    //! [texts]
    StyleChooser chooser;
    chooser.show();
    const QStringList arguments = QApplication::arguments();
    if (arguments.value(1) == "--screenshot")
        return chooser.grab().save(arguments.value(2)) ? 0 : 1;
    return QApplication::exec();
}
