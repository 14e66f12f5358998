// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// The short ways from texts to numbers and times, and back, against Qt's own conversions.

#include "KelFuzz.h"
#include "KelFuzzReader.h"

#include <KelPlainGPX.h>
#include <KelXMLConversion.h>
#include <KelXMLDomCursor.h>
#include <KelXMLLoader.h>
#include <KelXMLPlainCursor.h>
#include <KelXMLStreamCursor.h>

#include <QBuffer>
#include <QDateTime>
#include <QDomDocument>
#include <QString>

namespace
{

void compareTimes(const QDateTime &actual, const QDateTime &expected)
{
    KelFuzz::check(actual.isValid() == expected.isValid() && actual.timeSpec() == expected.timeSpec()
                       && (!actual.isValid() || actual.toMSecsSinceEpoch() == expected.toMSecsSinceEpoch()),
                   "a time is what Qt reads");
}

void compareConversions(const QByteArray &bytes)
{
    const QString wide = QString::fromUtf8(bytes);
    const QLatin1String narrow(bytes);
    bool expectedOk = false;
    bool ok = false;

    const double expected = wide.toDouble(&expectedOk);
    KelFuzz::compareDouble(KelXMLConversion::toDouble(wide, &ok), expected, "a number in UTF-16 is what Qt reads");
    KelFuzz::check(ok == expectedOk, "a number in UTF-16 can be read when Qt can");
    const double expectedNarrow = QString(narrow).toDouble(&expectedOk);
    KelFuzz::compareDouble(KelXMLConversion::toDouble(narrow, &ok), expectedNarrow, "a number in Latin-1 is what Qt reads");
    KelFuzz::check(ok == expectedOk, "a number in Latin-1 can be read when Qt can");

    compareTimes(KelXMLConversion::toDateTime(wide), QDateTime::fromString(wide, Qt::ISODate));
    compareTimes(KelXMLConversion::toDateTime(narrow), QDateTime::fromString(QString(narrow), Qt::ISODate));
}

/// The same text as an attribute and as a text, whatever markup it brings with it.
void compareInDocuments(const QByteArray &text)
{
    const QByteArray xml = "<r><a b='" + text + "'/><n>" + text + "</n><t>" + text + "</t></r>";
    QDomDocument document;
    KelXMLLoader::setContent(document, xml);
    const QDomElement root = document.documentElement();

    const auto log = [](KelXMLCursor &cursor) {
        QString values;
        while (cursor.nextChild()) {
            KelXMLCursor &child = cursor.child();
            values += QString::number(child.attributeDouble(u"b", 0.25), 'g', 17) + QLatin1Char(' ');
            if (child.name() == u"n")
                values += QString::number(child.textDouble(), 'g', 17) + QLatin1Char(' ');
            else if (child.name() == u"t")
                values += child.textDateTime().toString(Qt::ISODateWithMs) + QLatin1Char(' ');
        }
        return values;
    };
    const auto toNumber = [](const QString &value) {
        bool ok = false;
        const double number = value.toDouble(&ok);
        return QString::number(ok ? number : 0.0, 'g', 17);
    };
    QString expected;
    for (QDomElement child = root.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        expected += (child.hasAttribute("b") ? toNumber(child.attribute("b")) : QStringLiteral("0.25")) + QLatin1Char(' ');
        if (child.tagName() == QLatin1String("n"))
            expected += toNumber(child.text()) + QLatin1Char(' ');
        else if (child.tagName() == QLatin1String("t"))
            expected += QDateTime::fromString(child.text(), Qt::ISODate).toString(Qt::ISODateWithMs) + QLatin1Char(' ');
    }

    KelXMLDomCursor tree(root);
    KelFuzz::compare(log(tree), expected, "values of a tree are what Qt reads");

    QBuffer buffer;
    buffer.setData(xml);
    buffer.open(QIODevice::ReadOnly);
    KelXMLStreamCursor stream(&buffer);
    const QString fromStream = log(stream);
    KelFuzz::check(stream.finish() == !root.isNull(), "stream and tree agree on what is well formed");
    buffer.seek(0);
    KelXMLPlainCursor plain(&buffer);
    const QString fromPlain = log(plain);
    const bool isPlain = plain.finish();
    KelFuzz::check(!isPlain || !root.isNull(), "what is plain is well formed");
    if (!root.isNull())
        KelFuzz::compare(fromStream, expected, "values of a stream are what Qt reads");
    if (isPlain)
        KelFuzz::compare(fromPlain, expected, "values of the plain form are what Qt reads");
}

/// Numbers as they come, and near to what rounds.
void compareWritten(KelFuzzReader &reader)
{
    const bool nearTies = reader.flag();
    const auto angle = [&reader, nearTies] {
        return nearTies ? double(reader.int64() % 2'000'000'000'000) / 2e10 : reader.anyDouble();
    };
    const double latitude = angle();
    const double longitude = angle();
    const int elevation = reader.int32();
    const QDateTime time = reader.flag() ? QDateTime::fromMSecsSinceEpoch(reader.int64(), Qt::UTC) : QDateTime();
    const KelGPXTrackPoint point(KelGeoPosition(KelLatitude(latitude), KelLongitude(longitude)), elevation, time, QString());
    KelFuzz::compare(point.toKml(), KelPlainGPX::encodeTuple(point), "a point is written as by Qt's conversions");
    KelFuzz::compare(KelPlainGPX::describe(KelGPXTrackPoint::decodeKml(point.toKml())),
                     KelPlainGPX::describe(KelPlainGPX::decodeTuple(KelPlainGPX::encodeTuple(point))),
                     "a point that is written is read by the plain rules");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    KelFuzzReader reader(data, size);
    const int kind = reader.byte();
    if (kind == 0) {
        compareWritten(reader);
        return 0;
    }
    const QByteArray text = KelFuzz::bytes(data, size); // mostly texts, which begin with no zero
    compareConversions(text);
    compareInDocuments(text);
    return 0;
}
