// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Edits a position as degrees, minutes and seconds.
//   angle-editor ["N53.14 E8.21"] [--screenshot editor.png]

#include <KelGeoArcEdit.h>
#include <KelGeoPosition.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

namespace
{

class PositionEditor : public QWidget
{
public:
    explicit PositionEditor(const KelGeoPosition &position)
        : m_latitude(this, true)
        , m_longitude(this, false)
    {
        //! [set]
        m_latitude.setGeoArc(position.latitude());
        m_longitude.setGeoArc(position.longitude());
        //! [set]

        auto *take = new QPushButton("Take over");
        auto *layout = new QFormLayout(this);
        layout->addRow("Latitude", &m_latitude);
        layout->addRow("Longitude", &m_longitude);
        layout->addRow(take, &m_text);
        connect(take, &QPushButton::clicked, this, &PositionEditor::takeOver);
        takeOver();
    }

    //! [get]
    KelGeoPosition position() const
    {
        return KelGeoPosition(KelLatitude(m_latitude.geoArc()), KelLongitude(m_longitude.geoArc()));
    }
    //! [get]

private:
    void takeOver() { m_text.setText(position().toString(false)); }

    KelGeoArcEdit m_latitude;
    KelGeoArcEdit m_longitude;
    QLabel m_text;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addPositionalArgument("position", "such as \"N53.14 E8.21\"");
    parser.addOption({"screenshot", "Save the editor as a picture and quit.", "file"});
    parser.addHelpOption();
    parser.process(application);

    const QString text = parser.positionalArguments().value(0, "N53.14375 E8.214");
    const KelGeoPosition position = KelGeoPosition::parse(text);
    if (!position.isValid()) {
        qWarning("\"%s\" is no position", qPrintable(text));
        return 2;
    }
    PositionEditor editor(position);
    editor.show();
    if (!parser.isSet("screenshot"))
        return QApplication::exec();
    // Thousandths of a second, which is what the editor shows, are about three centimetres.
    const bool kept = editor.position().distance(position) < 0.0001;
    return kept && editor.grab().save(parser.value("screenshot")) ? 0 : 1;
}
