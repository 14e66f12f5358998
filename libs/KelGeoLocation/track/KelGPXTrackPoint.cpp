// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackPoint.h"

#include "KelGPXNames.h"
#include "KelGPXReader.h"
#include <KelGPXTrackPointImpl.h>
#include <KelXMLBuilder.h>
#include <KelXMLDomCursor.h>

#include <QDomElement>
#include <QStringView>

#include <array>
#include <cmath>
#include <cstdint>

namespace
{

constexpr int decimals = 10;
constexpr std::uint64_t decimalsFactor = 10'000'000'000; // 10^decimals

/// Text that grows to the left, in place.
class Digits
{
public:
    void prepend(char16_t character) { *--m_begin = character; }
    void prepend(std::uint64_t number)
    {
        do {
            prepend(char16_t(u'0' + number % 10));
            number /= 10;
        } while (number != 0);
    }
    void prependInteger(qint64 number)
    {
        prepend(number < 0 ? 0 - std::uint64_t(number) : std::uint64_t(number));
        if (number < 0)
            prepend(u'-');
    }
    void appendTo(QString &text) const { text.append(QStringView(m_begin, m_buffer.data() + m_buffer.size())); }

private:
    std::array<char16_t, 48> m_buffer; // two 64-bit numbers with signs and commas
    char16_t *m_begin = m_buffer.data() + m_buffer.size();
};

/// Appends QString::number(value, 'f', 10) without its trailing zeros, by way of exactly that text.
void appendByText(QString &text, double value)
{
    text.append(QString::number(value, 'f', decimals));
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
}

/// The same text, from the exact value: a double is a whole number times a power of two, so |value| * 10^10 fits
/// into 128 bits and is rounded (half up, as the conversion of Qt does) by a shift.
void appendCoordinate(QString &text, double value)
{
    // Angles and everything else of that size. Small values have exponents too far below for the shift; a zero
    // loses its sign in the text, which is one more reason to leave them to the conversion.
    const double size = std::abs(value);
    if (!(size >= 1e-6 && size < 1e6)) {
        appendByText(text, value);
        return;
    }
    int exponent = 0;
    const auto mantissa = static_cast<std::uint64_t>(std::ldexp(std::frexp(size, &exponent), 53));
    const int shift = 53 - exponent; // 33 ... 72
    __extension__ typedef unsigned __int128 Wide;
    const Wide scaled = Wide(mantissa) * decimalsFactor;
    const auto rounded = static_cast<std::uint64_t>((scaled + (Wide(1) << (shift - 1))) >> shift);

    Digits digits;
    std::uint64_t fraction = rounded % decimalsFactor;
    int length = decimals;
    for (; length > 0 && fraction % 10 == 0; --length)
        fraction /= 10;
    for (; length > 0; --length, fraction /= 10)
        digits.prepend(char16_t(u'0' + fraction % 10));
    digits.prepend(u'.');
    digits.prepend(rounded / decimalsFactor);
    if (value < 0)
        digits.prepend(u'-');
    digits.appendTo(text);
}

} // namespace

KelGPXTrackPoint::KelGPXTrackPoint()
    : d(new KelGPXTrackPointImpl)
{
}

KelGPXTrackPoint::KelGPXTrackPoint(const KelGeoPosition &position, int elevation, const QDateTime &timeStamp,
                                   const QString &description)
    : d(new KelGPXTrackPointImpl(position, elevation, timeStamp, description))
{
}

KelGPXTrackPoint::KelGPXTrackPoint(const QDomElement &element)
{
    KelXMLDomCursor cursor(element);
    *this = KelGPXReader::readPoint(cursor);
}

KelGPXTrackPoint::KelGPXTrackPoint(KelGPXTrackPointImpl *data)
    : d(data)
{
}

KelGPXTrackPoint::KelGPXTrackPoint(const KelGPXTrackPoint &other) = default;
KelGPXTrackPoint::KelGPXTrackPoint(KelGPXTrackPoint &&other) noexcept = default;
KelGPXTrackPoint &KelGPXTrackPoint::operator=(const KelGPXTrackPoint &other) = default;
KelGPXTrackPoint &KelGPXTrackPoint::operator=(KelGPXTrackPoint &&other) noexcept = default;
KelGPXTrackPoint::~KelGPXTrackPoint() = default;

KelGeoPosition KelGPXTrackPoint::position() const
{
    return d->position();
}

int KelGPXTrackPoint::elevation() const
{
    return d->elevation();
}

QDateTime KelGPXTrackPoint::timeStamp() const
{
    return d->timeStamp();
}

QString KelGPXTrackPoint::description() const
{
    return d->description();
}

bool KelGPXTrackPoint::isNull() const
{
    return d->position().latitude().isNull() && d->position().longitude().isNull();
}

bool KelGPXTrackPoint::operator==(const KelGPXTrackPoint &other) const
{
    return d.constData() == other.d.constData() || *d == *other.d;
}

void KelGPXTrackPoint::toXml(QDomElement &parent) const
{
    const auto degrees = [](const KelGeoArc &arc) { return QString::number(arc.decimalDegrees(), 'g', 10); };

    QDomElement element = KelXMLBuilder::buildDomElement(parent, KelGPXNames::TrackPoint.toString());
    element.setAttribute(KelGPXNames::Latitude.toString(), degrees(d->position().latitude()));
    element.setAttribute(KelGPXNames::Longitude.toString(), degrees(d->position().longitude()));
    if (d->elevation() != 0)
        KelXMLBuilder::buildDomElement(element, KelGPXNames::Elevation.toString(), d->elevation());
    if (d->timeStamp().isValid())
        KelXMLBuilder::buildDomElement(element, KelGPXNames::Time.toString(), d->timeStamp().toString(Qt::ISODate));
    if (!d->description().isEmpty())
        KelXMLBuilder::buildDomElement(element, KelGPXNames::Description.toString(), d->description());
}

QString KelGPXTrackPoint::toKml() const
{
    QString tuple;
    appendKml(tuple);
    return tuple;
}

void KelGPXTrackPoint::appendKml(QString &text) const
{
    const bool hasTime = d->timeStamp().isValid();
    appendCoordinate(text, d->position().longitude().decimalDegrees());
    text.append(QLatin1Char(','));
    appendCoordinate(text, d->position().latitude().decimalDegrees());
    if (d->elevation() == 0 && !hasTime)
        return;
    Digits fields;
    // Deliberate: milliseconds here, although decodeKml() reads seconds.
    if (hasTime) {
        fields.prependInteger(d->timeStamp().toMSecsSinceEpoch());
        fields.prepend(u',');
    }
    fields.prependInteger(d->elevation());
    fields.prepend(u',');
    fields.appendTo(text);
}

KelGPXTrackPoint KelGPXTrackPoint::decodeKml(const QString &tuple)
{
    return KelGPXReader::decodeTuple(tuple);
}

QString KelGPXTrackPoint::encode(const KelGeoArc &arc)
{
    QString text;
    appendCoordinate(text, arc.decimalDegrees());
    return text;
}

KelGeoPositionList KelGPXTrackPoint::allPoints() const
{
    return d->allPoints();
}

QList<KelGeoPositionList> KelGPXTrackPoint::chunkedPoints() const
{
    return d->chunkedPoints();
}

bool KelGPXTrackPoint::isSinglePoint() const
{
    return d->isSinglePoint();
}

KelGeoPosition KelGPXTrackPoint::firstPoint() const
{
    return d->firstPoint();
}

KelGeoPosition KelGPXTrackPoint::lastPoint() const
{
    return d->lastPoint();
}

QList<QDateTime> KelGPXTrackPoint::allTimeStamps() const
{
    return d->allTimeStamps();
}
