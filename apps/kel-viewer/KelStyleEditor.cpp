// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelStyleEditor.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>

namespace
{

constexpr double WIDEST_LINE = 200.0;
constexpr QSize PEN_SAMPLE(64, 16);
constexpr QSize COLOR_SAMPLE(36, 16);

QIcon penIcon(Qt::PenStyle style, const QWidget &widget)
{
    QPixmap pixmap(PEN_SAMPLE * widget.devicePixelRatioF());
    pixmap.setDevicePixelRatio(widget.devicePixelRatioF());
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setPen(QPen(widget.palette().color(QPalette::Text), 2, style));
    painter.drawLine(2, PEN_SAMPLE.height() / 2, PEN_SAMPLE.width() - 2, PEN_SAMPLE.height() / 2);
    return pixmap;
}

QDoubleSpinBox *widthBox(QWidget *parent, const QString &name)
{
    auto *box = new QDoubleSpinBox(parent);
    box->setRange(0.0, WIDEST_LINE);
    // Widths are stored as whole numbers.
    box->setDecimals(0);
    box->setKeyboardTracking(false);
    box->setSuffix(KelStyleEditor::tr(" px"));
    box->setAccessibleName(name);
    return box;
}

QSpinBox *numberBox(QWidget *parent, int minimum, int maximum, const QString &name)
{
    auto *box = new QSpinBox(parent);
    box->setRange(minimum, maximum);
    box->setKeyboardTracking(false);
    box->setAccessibleName(name);
    return box;
}

void setOption(KelGPXTrackConfiguration &configuration, KelGPXTrackDisplayOptionsEnum option, bool on)
{
    KelGPXTrackDisplayOptions options = configuration.currentDisplayOptions();
    if (on)
        options |= option;
    else
        options.exclude(option);
    configuration.setCurrentDisplayOptions(options);
}

} // namespace

KelStyleEditor::KelStyleEditor(QWidget *parent)
    : QWidget(parent)
    , m_shown(KelGPXTrackConfiguration::defaultValue())
    , m_name(new QLineEdit(this))
    , m_lineColor(new QPushButton(this))
    , m_lineWidth(widthBox(this, tr("Linienbreite")))
    , m_penStyle(new QComboBox(this))
    , m_fillColor(new QPushButton(this))
    , m_haloWidth(widthBox(this, tr("Breite des Hofs")))
    , m_stroke(new QCheckBox(tr("&Linie zeichnen"), this))
    , m_fill(new QCheckBox(tr("Fläche fülle&n"), this))
    , m_shape(new QComboBox(this))
    , m_smoothingStrength(numberBox(this, 0, 100, tr("Glättung")))
    , m_smoothingSteps(numberBox(this, 1, 100000, tr("Schritte der Glättung")))
    , m_asDefault(new QPushButton(tr("Als &Standard für neue Strecken"), this))
{
    m_name->setObjectName(QStringLiteral("trackName"));
    m_lineColor->setObjectName(QStringLiteral("lineColor"));
    m_fillColor->setObjectName(QStringLiteral("fillColor"));
    m_penStyle->setObjectName(QStringLiteral("penStyle"));
    m_shape->setObjectName(QStringLiteral("shape"));
    m_lineWidth->setObjectName(QStringLiteral("lineWidth"));
    m_haloWidth->setObjectName(QStringLiteral("haloWidth"));
    m_smoothingStrength->setObjectName(QStringLiteral("smoothingStrength"));
    m_smoothingSteps->setObjectName(QStringLiteral("smoothingSteps"));
    m_stroke->setObjectName(QStringLiteral("stroke"));
    m_fill->setObjectName(QStringLiteral("fill"));
    m_asDefault->setObjectName(QStringLiteral("asDefault"));

    m_smoothingStrength->setSuffix(tr(" %"));
    m_smoothingStrength->setToolTip(tr("So viel behält jeder Punkt von seiner eigenen Lage; 100 % glättet nicht."));
    m_smoothingSteps->setToolTip(tr("In so viele gerade Stücke wird die Strecke geteilt."));
    m_haloWidth->setToolTip(tr("So weit bleibt die Karte um die Strecke herum sichtbar, wenn sie freigestellt wird."));
    m_shape->setModel(&m_shapes);
    m_shape->setIconSize(QSize(24, 24));
    m_shape->setAccessibleName(tr("Form"));
    m_penStyle->setIconSize(PEN_SAMPLE);
    m_penStyle->setAccessibleName(tr("Strichart"));
    for (const auto &[style, name] : {std::pair(Qt::SolidLine, tr("durchgezogen")),
                                      std::pair(Qt::DashLine, tr("gestrichelt")),
                                      std::pair(Qt::DotLine, tr("gepunktet")),
                                      std::pair(Qt::DashDotLine, tr("Strich-Punkt")),
                                      std::pair(Qt::DashDotDotLine, tr("Strich-Punkt-Punkt")),
                                      std::pair(Qt::NoPen, tr("keine"))})
        m_penStyle->addItem(penIcon(style, *this), name, int(style));

    createForm();
    connectFields();
    m_showing = true;
    show(m_shown);
    m_showing = false;
    setTracks({});
}

void KelStyleEditor::createForm()
{
    auto *form = new QFormLayout(this);
    // A narrow dock shows the fields below their labels rather than cut off.
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("Na&me:"), m_name);
    form->addRow(m_stroke);
    form->addRow(tr("Linien&farbe:"), m_lineColor);
    form->addRow(tr("Linienb&reite:"), m_lineWidth);
    form->addRow(tr("S&trichart:"), m_penStyle);
    form->addRow(m_fill);
    form->addRow(tr("F&üllfarbe:"), m_fillColor);
    form->addRow(tr("&Hof:"), m_haloWidth);
    form->addRow(tr("F&orm:"), m_shape);
    form->addRow(tr("&Glättung:"), m_smoothingStrength);
    form->addRow(tr("S&chritte:"), m_smoothingSteps);
    form->addRow(m_asDefault);
}

void KelStyleEditor::connectFields()
{
    connect(m_name, &QLineEdit::editingFinished, this, [this] {
        if (m_name->isEnabled() && m_name->text() != m_shownName) {
            m_shownName = m_name->text();
            Q_EMIT renamed(m_shownName);
        }
    });
    connect(m_lineColor, &QPushButton::clicked, this, [this] { chooseColor(false); });
    connect(m_fillColor, &QPushButton::clicked, this, [this] { chooseColor(true); });
    connect(m_lineWidth, &QDoubleSpinBox::valueChanged, this, [this](double width) {
        apply([width](KelGPXTrackConfiguration &c) { c.setLineWidth(KelDistance(width)); }, tr("Linienbreite"));
    });
    connect(m_haloWidth, &QDoubleSpinBox::valueChanged, this, [this](double width) {
        apply([width](KelGPXTrackConfiguration &c) { c.setHaloWidth(KelDistance(width)); }, tr("Breite des Hofs"));
    });
    connect(m_penStyle, &QComboBox::activated, this, [this](int row) {
        const auto style = static_cast<Qt::PenStyle>(m_penStyle->itemData(row).toInt());
        apply([style](KelGPXTrackConfiguration &c) { c.setPenStyle(KelPenStyle(style)); }, tr("Strichart"));
    });
    connect(m_stroke, &QCheckBox::toggled, this, [this](bool on) {
        apply([on](KelGPXTrackConfiguration &c) { setOption(c, DisplayStroke, on); }, tr("Linie zeichnen"));
    });
    connect(m_fill, &QCheckBox::toggled, this, [this](bool on) {
        apply([on](KelGPXTrackConfiguration &c) { setOption(c, DisplayFill, on); }, tr("Fläche füllen"));
    });
    connect(m_shape, &QComboBox::activated, this, [this](int row) {
        const KelGPXFullShape shape = m_shapes.markerAt(row);
        apply(
            [shape](KelGPXTrackConfiguration &c) {
                c.setTrackShape(shape.trackShape());
                c.setMarkerShape(shape.markerShape());
            },
            tr("Form"));
    });
    connect(m_smoothingStrength, &QSpinBox::valueChanged, this, [this](int strength) {
        apply([strength](KelGPXTrackConfiguration &c) { c.setSmoothingStrength(strength); }, tr("Glättung"));
    });
    connect(m_smoothingSteps, &QSpinBox::valueChanged, this, [this](int steps) {
        apply([steps](KelGPXTrackConfiguration &c) { c.setSmoothingSteps(steps); }, tr("Schritte der Glättung"));
    });
    connect(m_asDefault, &QPushButton::clicked, this, [this] { Q_EMIT defaultRequested(m_shown); });
}

void KelStyleEditor::setTracks(const QList<KelGPXConfiguredTrack> &tracks)
{
    setEnabled(!tracks.isEmpty());
    // One name for several tracks would be no help in telling them apart.
    m_name->setEnabled(tracks.size() == 1);
    m_shownName = tracks.size() == 1 ? tracks.first().name() : QString();
    m_name->setText(m_shownName);
    m_name->setPlaceholderText(tracks.isEmpty() ? tr("Keine Strecke ausgewählt")
                                                : tr("%n Strecke(n)", nullptr, int(tracks.size())));
    if (tracks.isEmpty())
        return;
    m_showing = true;
    fillShapes(tracks.first());
    show(tracks.first().configuration());
    m_showing = false;
}

void KelStyleEditor::editName()
{
    m_name->setFocus();
    m_name->selectAll();
}

void KelStyleEditor::fillShapes(const KelGPXConfiguredTrack &track)
{
    // The shapes that the points allow, whatever is chosen now.
    m_shapes.fill(track.naturalShape());
}

void KelStyleEditor::show(const KelGPXTrackConfiguration &configuration)
{
    m_shown = configuration;
    setButtonColor(m_lineColor, configuration.lineColor());
    setButtonColor(m_fillColor, configuration.fillColor());
    m_lineWidth->setValue(configuration.lineWidth().value());
    m_haloWidth->setValue(configuration.haloWidth().value());
    m_penStyle->setCurrentIndex(m_penStyle->findData(int(configuration.penStyle().value())));
    m_stroke->setChecked(configuration.hasDrawOption(DisplayStroke));
    m_fill->setChecked(configuration.hasDrawOption(DisplayFill));
    m_smoothingStrength->setValue(configuration.smoothingStrength());
    m_smoothingSteps->setValue(configuration.smoothingSteps());

    m_shapes.setStrokeColor(configuration.lineColor());
    m_shapes.setFillColor(configuration.fillColor());
    m_shapes.setDisplayOptions(configuration.currentDisplayOptions());
    const KelGPXFullShape shape(configuration.trackShape(), configuration.markerShape());
    m_shape->setCurrentIndex(m_shapes.indexOf(shape));
}

void KelStyleEditor::apply(const std::function<void(KelGPXTrackConfiguration &)> &change, const QString &text)
{
    if (m_showing)
        return;
    change(m_shown);
    Q_EMIT edited(change, text);
}

void KelStyleEditor::chooseColor(bool fill)
{
    const QString title = fill ? tr("Füllfarbe") : tr("Linienfarbe");
    const QColor color = QColorDialog::getColor(fill ? m_shown.fillColor() : m_shown.lineColor(), this, title,
                                                QColorDialog::ShowAlphaChannel);
    if (!color.isValid())
        return;
    setButtonColor(fill ? m_fillColor : m_lineColor, color);
    apply([color, fill](KelGPXTrackConfiguration &c) { fill ? c.setFillColor(color) : c.setLineColor(color); }, title);
}

void KelStyleEditor::setButtonColor(QPushButton *button, const QColor &color)
{
    // Half of it on grey, so that one sees how transparent a colour is.
    QPixmap pixmap(COLOR_SAMPLE * devicePixelRatioF());
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    pixmap.fill(Qt::white);
    QPainter painter(&pixmap);
    painter.fillRect(0, 0, COLOR_SAMPLE.width() / 2, COLOR_SAMPLE.height(), Qt::gray);
    painter.fillRect(QRect(QPoint(0, 0), COLOR_SAMPLE), color);
    painter.end();
    button->setIcon(pixmap);
    button->setIconSize(COLOR_SAMPLE);
    const QString name = color.name(color.alpha() == 255 ? QColor::HexRgb : QColor::HexArgb);
    button->setText(name);
    button->setAccessibleName(button == m_fillColor ? tr("Füllfarbe %1").arg(name) : tr("Linienfarbe %1").arg(name));
}
