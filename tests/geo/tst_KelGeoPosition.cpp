// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "../../libs/KelGeoLocation/base/KelSlabPool.h"
#include <KelGeoPosition.h>
#include <KelGeoPositionImpl.h>
#include <KelTestSupport.h>

#include <QtTest>

#include <QDomDocument>
#include <QSet>
#include <QUrlQuery>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <random>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{

constexpr double pi = 3.141592653589793;

bool isAt(const KelGeoPosition &position, double latitude, double longitude)
{
    return position.latitude().decimalDegrees() == latitude && position.longitude().decimalDegrees() == longitude;
}

bool isDefault(const KelGeoPosition &position)
{
    return isAt(position, 720.0, 720.0);
}

/// The formula on plain numbers, step by step.
double plainDistance(double latitude1, double longitude1, double latitude2, double longitude2)
{
    const auto isAngle = [](double angle) { return angle >= -360.0 && angle <= 360.0; };
    const auto isPlace = [isAngle](double latitude, double longitude) {
        return isAngle(latitude) && isAngle(longitude) && !(latitude == 0.0 && longitude == 0.0);
    };
    if (!isPlace(latitude1, longitude1) || !isPlace(latitude2, longitude2))
        return 6370000.0;
    constexpr double radians = 0.017453292519943295;
    const double deltaPhi = std::abs(latitude1 - latitude2) * radians;
    const double deltaLambda = std::abs(longitude1 - longitude2) * radians;
    const double sinePhi = std::sin(deltaPhi * 0.5);
    const double sineLambda = std::sin(deltaLambda * 0.5);
    double a = sinePhi * sinePhi
        + sineLambda * sineLambda * std::cos(latitude1 * radians) * std::cos(latitude2 * radians);
    if (a > 1.0) // exact antipodes
        a = 1.0;
    return 2.0 * std::atan2(std::sqrt(a), std::sqrt(1.0 - a)) * 6370.0;
}

/// Places all over the world, close to each other and far apart, and now and then what is no place.
class RandomAngles
{
public:
    explicit RandomAngles(unsigned seed)
        : m_engine(seed)
    {
    }

    double angle(double limit)
    {
        static const double special[] = {0.0, -0.0, 90.0, -90.0, 180.0, -180.0, 360.0, -360.0, std::nextafter(360.0, 400.0),
                                         720.0, 1e-300, 5e-324, std::numeric_limits<double>::infinity(),
                                         -std::numeric_limits<double>::infinity(), std::nan("")};
        if (m_engine() % 16 == 0)
            return special[m_engine() % std::size(special)];
        return std::uniform_real_distribution<double>(-limit, limit)(m_engine);
    }

    double beside(double angle)
    {
        const double width = std::pow(10.0, std::uniform_real_distribution<double>(-16, 2)(m_engine));
        return angle + std::uniform_real_distribution<double>(-width, width)(m_engine);
    }

    bool coin() { return m_engine() % 2 == 0; }

private:
    std::mt19937_64 m_engine;
};

} // namespace

class tst_KelGeoPosition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constants();
    void construction();
    void constructionWithHemispheres_data();
    void constructionWithHemispheres();
    void copiesAreIndependent();
    void memoryOfDataThatCannotBeMadeIsTakenBack();
    void subclassesOfTheData();
    void moving();
    void catchLatitude();
    void isValid_data();
    void isValid();
    void equality_data();
    void equality();
    void ordering_data();
    void ordering();
    void compass();
    void hemispheres();
    void hashValue();
    void arithmetic();
    void distance_data();
    void distance();
    void distanceOfInvalidPositions();
    void distanceOfAntipodesIsANumber();
    void distanceIsThatOfTheFormula();
    void latitudeDeviation();
    void longitudeDeviation();
    void moveNorthBy();
    void moveEastBy();
    void normalized();
    void toPointF();
    void toString_data();
    void toString();
    void writeToXml();
    void fromXml_data();
    void fromXml();
    void fromXmlWithPrefix();
    void xmlRoundTrip();
    void writeToQuery();
    void parse_data();
    void parse();
    void fromString_data();
    void fromString();
    void debugStream();
};

void tst_KelGeoPosition::constants()
{
    QVERIFY(KelGeoPositionImpl::EARTHRADIUS == 6370.0);
    QVERIFY(KelGeoPositionImpl::ARCMINUTELENGTH == 1.852);
    QVERIFY(KelGeoPositionImpl::PI == 3.14159265359);
    QVERIFY(KelGeoPositionImpl::_2PiR == 111.1774733520461);
    QVERIFY(KelGeoPosition::UNREACHABLE_KM == 6370000.0);
    QVERIFY(std::has_virtual_destructor_v<KelGeoPositionImpl>);
    QVERIFY(std::has_virtual_destructor_v<KelGeoPosition>);
}

void tst_KelGeoPosition::construction()
{
    QVERIFY(isDefault(KelGeoPosition()));
    QVERIFY(isAt(KelGeoPosition::null(), 0.0, 0.0));
    QVERIFY(isAt(KelGeoPosition(53.0, 8.0), 53.0, 8.0));
    QVERIFY(isAt(KelGeoPosition(KelLatitude(53.0), KelLongitude(8.0)), 53.0, 8.0));
    // Nothing is folded.
    QVERIFY(isAt(KelGeoPosition(100.0, 1000.0), 100.0, 1000.0));
}

void tst_KelGeoPosition::constructionWithHemispheres_data()
{
    QTest::addColumn<char>("latitudeHemisphere");
    QTest::addColumn<char>("longitudeHemisphere");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");

    QTest::newRow("N E") << 'N' << 'E' << 53.0 << 8.0;
    QTest::newRow("S W") << 'S' << 'W' << -53.0 << -8.0;
    QTest::newRow("N W") << 'N' << 'W' << 53.0 << -8.0;
    QTest::newRow("any other character negates") << 'n' << 'O' << -53.0 << -8.0;
}

void tst_KelGeoPosition::constructionWithHemispheres()
{
    QFETCH(char, latitudeHemisphere);
    QFETCH(char, longitudeHemisphere);
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QVERIFY(isAt(KelGeoPosition(53.0, latitudeHemisphere, 8.0, longitudeHemisphere), latitude, longitude));
}

void tst_KelGeoPosition::copiesAreIndependent()
{
    const KelGeoPosition original(53.0, 8.0);
    KelGeoPosition copy(original);
    copy.setLatitude(54.0);
    QVERIFY(isAt(original, 53.0, 8.0));
    QVERIFY(isAt(copy, 54.0, 8.0));
    KelGeoPosition assigned;
    assigned = copy;
    assigned.setLongitude(9.0);
    QVERIFY(isAt(copy, 54.0, 8.0));
    QVERIFY(isAt(assigned, 54.0, 9.0));
}

namespace
{

/// Larger than the data itself, so that its memory does not come from where theirs does.
class NamedData : public KelGeoPositionImpl
{
public:
    NamedData(double theLatitude, double theLongitude, const QString &theName)
        : KelGeoPositionImpl(theLatitude, theLongitude)
        , name(theName)
    {
    }
    QString name;
};

/// Cannot be made.
class FailingData : public KelGeoPositionImpl
{
public:
    explicit FailingData(void *&place)
    {
        place = this;
        throw std::runtime_error("cannot be made");
    }
};

class LargeFailingData : public FailingData
{
public:
    using FailingData::FailingData;
    std::array<char, 200> more{};
};

} // namespace

void tst_KelGeoPosition::memoryOfDataThatCannotBeMadeIsTakenBack()
{
    void *place = nullptr;
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, delete new FailingData(place));
    const auto next = std::make_unique<KelGeoPositionImpl>();
    if (!KelSlabPool::STANDS_ASIDE)
        QCOMPARE(static_cast<void *>(next.get()), place);

    // Not from the pool, so not back into it.
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, delete new LargeFailingData(place));
    const auto other = std::make_unique<KelGeoPositionImpl>();
    if (!KelSlabPool::STANDS_ASIDE)
        QVERIFY(static_cast<void *>(other.get()) != place);
}

void tst_KelGeoPosition::subclassesOfTheData()
{
    std::vector<std::unique_ptr<KelGeoPositionImpl>> list;
    for (int i = 0; i < 100; ++i) {
        list.push_back(std::make_unique<NamedData>(i, i + 1.0, QString::number(i)));
        list.push_back(std::make_unique<KelGeoPositionImpl>(i, -i));
    }
    for (int i = 0; i < 100; ++i) {
        const auto *named = dynamic_cast<NamedData *>(list[size_t(2 * i)].get());
        QVERIFY(named);
        QCOMPARE(named->name, QString::number(i));
        QCOMPARE(named->longitude.decimalDegrees(), i + 1.0);
        QCOMPARE(list[size_t(2 * i + 1)]->longitude.decimalDegrees(), double(-i));
    }

    alignas(KelGeoPositionImpl) std::byte place[sizeof(KelGeoPositionImpl)];
    auto *const placed = new (place) KelGeoPositionImpl(1.0, 2.0);
    QCOMPARE(static_cast<void *>(placed), static_cast<void *>(place));
    placed->~KelGeoPositionImpl();
}

void tst_KelGeoPosition::moving()
{
    KelGeoPosition source(53.0, 8.0);
    KelGeoPosition target(std::move(source));
    QVERIFY(isAt(target, 53.0, 8.0));
    source = KelGeoPosition(1.0, 2.0);
    QVERIFY(isAt(source, 1.0, 2.0));
    target = std::move(source);
    QVERIFY(isAt(target, 1.0, 2.0));
    KelGeoPosition other(3.0, 4.0);
    target.swap(other);
    QVERIFY(isAt(target, 3.0, 4.0));
    QVERIFY(isAt(other, 1.0, 2.0));
}

void tst_KelGeoPosition::catchLatitude()
{
    KelGeoPosition pole(90.0, 8.0);
    const KelGeoPosition copy(pole);
    pole.catchLatitude();
    QVERIFY(isAt(pole, 89.99, 8.0));
    QVERIFY(isAt(copy, 90.0, 8.0));
    KelGeoPosition inside(53.0, 8.0);
    inside.catchLatitude();
    QVERIFY(isAt(inside, 53.0, 8.0));
}

void tst_KelGeoPosition::isValid_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<bool>("valid");

    QTest::newRow("somewhere") << 53.0 << 8.0 << true;
    QTest::newRow("null") << 0.0 << 0.0 << false;
    QTest::newRow("negative null") << -0.0 << 0.0 << false;
    QTest::newRow("close to null") << 0.0 << 0.0000001 << true;
    QTest::newRow("on the equator") << 0.0 << 8.0 << true;
    QTest::newRow("on the prime meridian") << 51.5 << 0.0 << true;
    QTest::newRow("invalid longitude") << 0.0 << 720.0 << false;
    QTest::newRow("invalid latitude") << -720.0 << 8.0 << false;
    QTest::newRow("beyond the poles, yet an angle") << 100.0 << 200.0 << true;
    QTest::newRow("last valid angles") << -360.0 << 360.0 << true;
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << 8.0 << false;
}

void tst_KelGeoPosition::isValid()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QTEST(KelGeoPosition(latitude, longitude).isValid(), "valid");
}

void tst_KelGeoPosition::equality_data()
{
    QTest::addColumn<KelGeoPosition>("a");
    QTest::addColumn<KelGeoPosition>("b");
    QTest::addColumn<bool>("equal");

    const KelGeoPosition shared(53.0, 8.0);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const KelGeoPosition nowhere(nan, nan);
    QTest::newRow("shared") << shared << shared << true;
    QTest::newRow("shared, even if no numbers") << nowhere << nowhere << true;
    QTest::newRow("not shared") << shared << KelGeoPosition(53.0, 8.0) << true;
    QTest::newRow("within the tolerance") << shared << KelGeoPosition(53.0000005, 7.9999995) << true;
    QTest::newRow("other latitude") << shared << KelGeoPosition(53.000002, 8.0) << false;
    QTest::newRow("other longitude") << shared << KelGeoPosition(53.0, 8.000002) << false;
    QTest::newRow("default positions") << KelGeoPosition() << KelGeoPosition() << true;
}

void tst_KelGeoPosition::equality()
{
    QFETCH(KelGeoPosition, a);
    QFETCH(KelGeoPosition, b);
    QFETCH(bool, equal);
    QCOMPARE(a == b, equal);
    QCOMPARE(b == a, equal);
    QCOMPARE(a != b, !equal);
}

void tst_KelGeoPosition::ordering_data()
{
    QTest::addColumn<KelGeoPosition>("a");
    QTest::addColumn<KelGeoPosition>("b");
    QTest::addColumn<bool>("less");
    QTest::addColumn<bool>("greater");

    QTest::newRow("same latitude, longitude decides") << KelGeoPosition(10.0, 5.0) << KelGeoPosition(10.0, 6.0)
                                                      << true << false;
    QTest::newRow("latitude decides") << KelGeoPosition(10.0, 6.0) << KelGeoPosition(11.0, 0.0) << true << false;
    QTest::newRow("latitude decides, greater") << KelGeoPosition(11.0, 0.0) << KelGeoPosition(10.0, 6.0) << false
                                               << true;
    QTest::newRow("latitudes within the tolerance, longitude decides")
        << KelGeoPosition(10.0000005, 5.0) << KelGeoPosition(10.0, 6.0) << true << false;
    QTest::newRow("same position") << KelGeoPosition(10.0, 5.0) << KelGeoPosition(10.0, 5.0) << false << false;
    QTest::newRow("longitudes are compared without tolerance")
        << KelGeoPosition(10.0, 5.0) << KelGeoPosition(10.0, 5.0000001) << true << false;
}

void tst_KelGeoPosition::ordering()
{
    QFETCH(KelGeoPosition, a);
    QFETCH(KelGeoPosition, b);
    QTEST(a < b, "less");
    QTEST(a > b, "greater");
}

void tst_KelGeoPosition::compass()
{
    const KelGeoPosition west(53.0, 170.0);
    const KelGeoPosition east(52.0, -170.0);
    QVERIFY(west.isNorthOf(east));
    QVERIFY(west.isNorthOf(KelLatitude(52.9)));
    QVERIFY(!west.isNorthOf(KelLatitude(53.0)));
    QVERIFY(!west.isSouthOf(east));
    QVERIFY(east.isSouthOf(west));
    QVERIFY(east.isSouthOf(KelLatitude(52.1)));
    QVERIFY(east.isEastOf(west));
    QVERIFY(east.isEastOf(KelLongitude(170.0)));
    QVERIFY(!east.isWestOf(west));
    QVERIFY(west.isWestOf(east));
    QVERIFY(west.isWestOf(KelLongitude(-170.0)));
    QVERIFY(!west.isEastOf(east));
}

void tst_KelGeoPosition::hemispheres()
{
    const KelGeoPosition southWest(-1.0, -1.0);
    QVERIFY(southWest.isInSouthernHemisphere());
    QVERIFY(!southWest.isInNorthernHemisphere());
    QVERIFY(southWest.isInWesternHemisphere());
    QVERIFY(!southWest.isInEasternHemisphere());
    const KelGeoPosition edge(0.0, -180.0);
    QVERIFY(edge.isInNorthernHemisphere());
    QVERIFY(!edge.isInSouthernHemisphere());
    QVERIFY(edge.isInEasternHemisphere());
    QVERIFY(!edge.isInWesternHemisphere());
}

void tst_KelGeoPosition::hashValue()
{
    QCOMPARE(KelGeoPosition(53.25, 8.5).hashValue(), ::qHash(61.75, 0));
    // Deliberate: mirror images share their hash.
    QCOMPARE(KelGeoPosition(8.5, 53.25).hashValue(), KelGeoPosition(53.25, 8.5).hashValue());
    QCOMPARE(qHash(KelGeoPosition(53.25, 8.5)), ::qHash(61.75, 0));
    QCOMPARE(qHash(KelGeoPosition(53.25, 8.5), 4711), ::qHash(61.75, 4711));
    const QSet<KelGeoPosition> positions{KelGeoPosition(1.0, 2.0), KelGeoPosition(2.0, 1.0), KelGeoPosition(1.0, 2.0)};
    QCOMPARE(positions.size(), 2);
}

void tst_KelGeoPosition::arithmetic()
{
    QVERIFY(isAt(KelGeoPosition(1.0, 2.0) + KelGeoPosition(10.0, 20.0), 11.0, 22.0));
    QVERIFY(isAt(KelGeoPosition(80.0, 170.0) + KelGeoPosition(80.0, 170.0), 160.0, 340.0));
    QVERIFY(isAt(KelGeoPosition(11.0, 22.0) / 2.0, 5.5, 11.0));
    QVERIFY(isDefault(KelGeoPosition(11.0, 22.0) / 0.0));
    KelGeoPosition position(1.0, 2.0);
    const KelGeoPosition copy(position);
    position += KelGeoPosition(3.0, 4.0);
    QVERIFY(isAt(position, 4.0, 6.0));
    position /= 4.0;
    QVERIFY(isAt(position, 1.0, 1.5));
    QVERIFY(isAt(copy, 1.0, 2.0));
    position /= 0.0;
    QVERIFY(isDefault(position));
}

void tst_KelGeoPosition::distance_data()
{
    QTest::addColumn<KelGeoPosition>("a");
    QTest::addColumn<KelGeoPosition>("b");
    QTest::addColumn<double>("km");

    constexpr double degree = 6370.0 * pi / 180.0;
    QTest::newRow("same position") << KelGeoPosition(53.0, 8.0) << KelGeoPosition(53.0, 8.0) << 0.0;
    QTest::newRow("one degree on the equator") << KelGeoPosition(0.0, 1.0) << KelGeoPosition(0.0, 2.0) << degree;
    QTest::newRow("one degree on a meridian") << KelGeoPosition(53.0, 8.0) << KelGeoPosition(54.0, 8.0) << degree;
    QTest::newRow("across the date line") << KelGeoPosition(0.0, 179.0) << KelGeoPosition(0.0, -179.0) << 2.0 * degree;
    QTest::newRow("a quarter of the globe") << KelGeoPosition(0.0, 1.0) << KelGeoPosition(0.0, 91.0) << 90.0 * degree;
    QTest::newRow("pole to equator") << KelGeoPosition(90.0, 8.0) << KelGeoPosition(0.0, 123.0) << 90.0 * degree;
    QTest::newRow("pole to pole") << KelGeoPosition(90.0, 8.0) << KelGeoPosition(-90.0, 8.0) << 180.0 * degree;
    // Thirty degrees up to the pole and thirty down on the other side.
    QTest::newRow("over the pole") << KelGeoPosition(60.0, 8.0) << KelGeoPosition(60.0, -172.0) << 60.0 * degree;
    // cos(angle) = sin^2(45) + cos^2(45) * cos(90) = 0.5
    QTest::newRow("sixty degrees of arc") << KelGeoPosition(45.0, 8.0) << KelGeoPosition(45.0, 98.0) << 60.0 * degree;
}

void tst_KelGeoPosition::distance()
{
    QFETCH(KelGeoPosition, a);
    QFETCH(KelGeoPosition, b);
    QFETCH(double, km);
    QVERIFY2(std::abs(a.distance(b) - km) < 1e-9 * (1.0 + km), qPrintable(QString::number(a.distance(b), 'g', 17)));
    QVERIFY(std::abs(b.distance(a) - km) < 1e-9 * (1.0 + km));
}

void tst_KelGeoPosition::distanceOfInvalidPositions()
{
    QVERIFY(KelGeoPosition(0.0, 0.0).distance(KelGeoPosition(0.0, 1.0)) == 6370000.0);
    QVERIFY(KelGeoPosition(0.0, 1.0).distance(KelGeoPosition::null()) == 6370000.0);
    QVERIFY(KelGeoPosition().distance(KelGeoPosition(53.0, 8.0)) == 6370000.0);
    QVERIFY(KelGeoPosition(53.0, 8.0).distance(KelGeoPosition(53.0, 720.0)) == 6370000.0);
}

void tst_KelGeoPosition::distanceOfAntipodesIsANumber()
{
    for (double latitude = -89.5; latitude < 90.0; latitude += 0.7) {
        for (double longitude = -179.3; longitude < 0.0; longitude += 3.1) {
            const KelGeoPosition antipode(-latitude, longitude + 180.0);
            const double km = KelGeoPosition(latitude, longitude).distance(antipode);
            QVERIFY(std::abs(km - 6370.0 * pi) < 1e-3);
        }
    }
}

void tst_KelGeoPosition::distanceIsThatOfTheFormula()
{
    bool ok = false;
    const int cases = qEnvironmentVariableIntValue("KEL_RANDOM_CASES", &ok);
    RandomAngles random(1);
    for (int i = 0; i < (ok ? cases : 100000); ++i) {
        const double latitude = random.angle(90.0);
        const double longitude = random.angle(180.0);
        const bool close = random.coin();
        const double otherLatitude = close ? random.beside(latitude) : random.angle(90.0);
        const double otherLongitude = close ? random.beside(longitude) : random.angle(180.0);
        const double expected = plainDistance(latitude, longitude, otherLatitude, otherLongitude);
        const double km =
            KelGeoPosition(latitude, longitude).distance(KelGeoPosition(otherLatitude, otherLongitude));
        QVERIFY2(std::bit_cast<std::uint64_t>(km) == std::bit_cast<std::uint64_t>(expected),
                 qPrintable(QStringLiteral("%1 %2 to %3 %4: %5 instead of %6")
                                .arg(latitude, 0, 'g', 17)
                                .arg(longitude, 0, 'g', 17)
                                .arg(otherLatitude, 0, 'g', 17)
                                .arg(otherLongitude, 0, 'g', 17)
                                .arg(km, 0, 'g', 17)
                                .arg(expected, 0, 'g', 17)));
    }
}

void tst_KelGeoPosition::latitudeDeviation()
{
    const KelGeoPosition position(53.0, 8.0);
    QVERIFY(position.latitudeDeviation(0.0).decimalDegrees() == 0.0);
    QCOMPARE(position.latitudeDeviation(1.852).decimalDegrees(), 1.0 / 60.0);
    QCOMPARE(position.latitudeDeviation(-111.12).decimalDegrees(), -1.0);
}

void tst_KelGeoPosition::longitudeDeviation()
{
    QVERIFY(KelGeoPosition(90.0, 8.0).longitudeDeviation(0.0).decimalDegrees() == 0.0);
    // No distance makes no degrees, wherever the position is.
    const double infinity = std::numeric_limits<double>::infinity();
    QVERIFY(KelGeoPosition(infinity, 8.0).longitudeDeviation(0.0).decimalDegrees() == 0.0);
    QCOMPARE(KelGeoPosition(0.0, 8.0).longitudeDeviation(111.1774733520461).decimalDegrees(), 1.0);
    QCOMPARE(KelGeoPosition(60.0, 8.0).longitudeDeviation(111.1774733520461).decimalDegrees(), 2.0);
    QCOMPARE(KelGeoPosition(-60.0, 8.0).longitudeDeviation(-111.1774733520461).decimalDegrees(), -2.0);
    // No guard at the pole. With the shortened pi the cosine is a little below zero there, and the sign turns.
    QVERIFY(KelGeoPosition(90.0, 8.0).longitudeDeviation(1.0).decimalDegrees() < -1e10);
}

void tst_KelGeoPosition::moveNorthBy()
{
    const KelGeoPosition moved = KelGeoPosition(53.0, 8.0).moveNorthBy(1.852 * 60.0);
    QCOMPARE(moved.latitude().decimalDegrees(), 54.0);
    QVERIFY(moved.longitude().decimalDegrees() == 8.0);
    QCOMPARE(KelGeoPosition(-89.5, 8.0).moveNorthBy(-1.852 * 60.0).latitude().decimalDegrees(), -90.5);
    QVERIFY(isAt(KelGeoPosition(53.0, 8.0).moveNorthBy(0.0), 53.0, 8.0));
}

void tst_KelGeoPosition::moveEastBy()
{
    const double atEquator = KelGeoPosition(0.0, 8.0).moveEastBy(50.0).longitude().decimalDegrees() - 8.0;
    const double atSixty = KelGeoPosition(60.0, 8.0).moveEastBy(50.0).longitude().decimalDegrees() - 8.0;
    QCOMPARE(atSixty, 2.0 * atEquator);
    QCOMPARE(atEquator, 50.0 / 111.1774733520461);
    QVERIFY(KelGeoPosition(60.0, 8.0).moveEastBy(50.0).latitude().decimalDegrees() == 60.0);
    // The date line is not minded.
    QCOMPARE(KelGeoPosition(0.0, 179.5).moveEastBy(111.1774733520461).longitude().decimalDegrees(), 180.5);
    QCOMPARE(KelGeoPosition(0.0, -179.5).moveEastBy(-111.1774733520461).longitude().decimalDegrees(), -180.5);
    QVERIFY(isAt(KelGeoPosition(53.0, 8.0).moveEastBy(0.0), 53.0, 8.0));
}

void tst_KelGeoPosition::normalized()
{
    QVERIFY(isAt(KelGeoPosition(100.0, 190.0).normalized(), 100.0, -170.0));
    QVERIFY(isAt(KelGeoPosition(-100.0, -540.0).normalized(), -100.0, -180.0));
    QVERIFY(isAt(KelGeoPosition(53.0, 8.0).normalized(), 53.0, 8.0));
}

void tst_KelGeoPosition::toPointF()
{
    const QPointF point = KelGeoPosition(53.0, 8.0).toPointF();
    QVERIFY(point.x() == 8.0);
    QVERIFY(point.y() == 53.0);
}

void tst_KelGeoPosition::toString_data()
{
    QTest::addColumn<KelGeoPosition>("position");
    QTest::addColumn<bool>("dms");
    QTest::addColumn<QString>("text");

    QTest::newRow("decimal") << KelGeoPosition(53.14375, 8.214) << false
                             << QStringLiteral("N53.14375000; E8.21400000");
    QTest::newRow("decimal, south-west") << KelGeoPosition(-53.14375, -8.214) << false
                                         << QStringLiteral("S53.14375000; W8.21400000");
    QTest::newRow("degrees, minutes, seconds") << KelGeoPosition(53.5, -8.25) << true
                                               << QStringLiteral("53° 30′ 0″ Nord<br>8° 15′ 0″ West");
    QTest::newRow("(0, 0) has two valid angles") << KelGeoPosition::null() << true
                                                 << QStringLiteral("0° 0′ 0″ Nord<br>0° 0′ 0″ Ost");
    QTest::newRow("invalid falls back to the decimal form") << KelGeoPosition() << true << QStringLiteral("; ");
    QTest::newRow("invalid, decimal") << KelGeoPosition() << false << QStringLiteral("; ");
    QTest::newRow("invalid latitude falls back") << KelGeoPosition(720.0, 8.5) << true
                                                 << QStringLiteral("; E8.50000000");
    QTest::newRow("invalid longitude falls back") << KelGeoPosition(53.5, 720.0) << true
                                                  << QStringLiteral("N53.50000000; ");
}

void tst_KelGeoPosition::toString()
{
    QFETCH(KelGeoPosition, position);
    QFETCH(bool, dms);
    QTEST(position.toString(dms), "text");
}

void tst_KelGeoPosition::writeToXml()
{
    QDomDocument document;
    QDomElement element = document.createElement(QStringLiteral("place"));
    KelGeoPosition(53.5, -8.25).writeToXml(element);
    QCOMPARE(element.attribute(QStringLiteral("latitude")), QStringLiteral("53.5"));
    QCOMPARE(element.attribute(QStringLiteral("longitude")), QStringLiteral("-8.25"));

    QDomElement empty = document.createElement(QStringLiteral("place"));
    KelGeoPosition::null().writeToXml(empty);
    KelGeoPosition().writeToXml(empty);
    KelGeoPosition(53.0, 720.0).writeToXml(empty);
    QCOMPARE(empty.attributes().count(), 0);
}

void tst_KelGeoPosition::fromXml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");

    QTest::newRow("both") << QStringLiteral("<p latitude='53.5' longitude='-8.25'/>") << 53.5 << -8.25;
    QTest::newRow("none") << QStringLiteral("<p/>") << -720.0 << -720.0;
    QTest::newRow("longitude missing") << QStringLiteral("<p latitude='53.5'/>") << 53.5 << -720.0;
    QTest::newRow("latitude missing") << QStringLiteral("<p longitude='8'/>") << -720.0 << 8.0;
    QTest::newRow("empty text") << QStringLiteral("<p latitude='' longitude='8'/>") << 0.0 << 8.0;
    QTest::newRow("unreadable text") << QStringLiteral("<p latitude='N53' longitude='8,5'/>") << 0.0 << 0.0;
    QTest::newRow("nothing is checked") << QStringLiteral("<p latitude='1000' longitude='0'/>") << 1000.0 << 0.0;
    QTest::newRow("exponent") << QStringLiteral("<p latitude='5.35e1' longitude='1E-3'/>") << 53.5 << 0.001;
}

void tst_KelGeoPosition::fromXml()
{
    QFETCH(QString, xml);
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    const QDomDocument document = KelTestSupport::document(xml);
    QVERIFY(isAt(KelGeoPosition::fromXml(document.documentElement(), QString()), latitude, longitude));
}

void tst_KelGeoPosition::fromXmlWithPrefix()
{
    const QDomDocument document = KelTestSupport::document(QStringLiteral(
        "<p from_latitude='1' from_longitude='2' to_latitude='3' to_longitude='4' latitude='5' longitude='6'/>"));
    const QDomElement element = document.documentElement();
    QVERIFY(isAt(KelGeoPosition::fromXml(element, QStringLiteral("from_")), 1.0, 2.0));
    QVERIFY(isAt(KelGeoPosition::fromXml(element, QStringLiteral("to_")), 3.0, 4.0));
    QVERIFY(isAt(KelGeoPosition::fromXml(element), 5.0, 6.0));
}

void tst_KelGeoPosition::xmlRoundTrip()
{
    const KelGeoPosition position(-41.28646123456, 174.772996908);
    QDomDocument document;
    QDomElement element = document.createElement(QStringLiteral("place"));
    position.writeToXml(element);
    QCOMPARE(KelGeoPosition::fromXml(element, QString()), position);
}

void tst_KelGeoPosition::writeToQuery()
{
    QUrlQuery query;
    KelGeoPosition(53.5, -8.25).writeTo(query);
    QCOMPARE(query.toString(QUrl::FullyEncoded),
             QStringLiteral("latitude=53.5000000000000000&longitude=-8.2500000000000000"));
}

void tst_KelGeoPosition::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");

    QTest::newRow("letters") << QStringLiteral("N53.1 E8.2") << 53.1 << 8.2;
    QTest::newRow("south-west") << QStringLiteral("S33.5 W70.25") << -33.5 << -70.25;
    QTest::newRow("no letters") << QStringLiteral("53.1 -8.2") << 53.1 << -8.2;
    QTest::newRow("any white space") << QStringLiteral(" \tN53.1 \n\t E8.2 \n") << 53.1 << 8.2;
    QTest::newRow("(0, 0): the angles are tested, not the position") << QStringLiteral("N0 E0") << 0.0 << 0.0;
    QTest::newRow("one token") << QStringLiteral("N53.1") << 720.0 << 720.0;
    QTest::newRow("three tokens") << QStringLiteral("N53.1 E8.2 100") << 720.0 << 720.0;
    QTest::newRow("empty") << QString() << 720.0 << 720.0;
    QTest::newRow("only blanks") << QStringLiteral("   ") << 720.0 << 720.0;
    QTest::newRow("longitude with a latitude's letter") << QStringLiteral("N53 S8") << 720.0 << 720.0;
    QTest::newRow("lower-case letter") << QStringLiteral("n53 E8") << 720.0 << 720.0;
    QTest::newRow("angle out of range") << QStringLiteral("N53 E361") << 720.0 << 720.0;
    QTest::newRow("comma instead of a blank") << QStringLiteral("N53,E8") << 720.0 << 720.0;
}

void tst_KelGeoPosition::parse()
{
    QFETCH(QString, text);
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QVERIFY(isAt(KelGeoPosition::parse(text), latitude, longitude));
}

void tst_KelGeoPosition::fromString_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");

    QTest::newRow("with letters") << QStringLiteral("53,30,0 N; 8,15,0 E") << 53.5 << 8.25;
    QTest::newRow("south-west") << QStringLiteral("53,30,0 S;8,15,0 W") << -53.5 << -8.25;
    QTest::newRow("further parts are ignored") << QStringLiteral("53,30,0;8,15,0;rubbish") << 53.5 << 8.25;
    QTest::newRow("(0, 0)") << QStringLiteral("0,0,0 N;0,0,0 E") << 0.0 << 0.0;
    QTest::newRow("one part") << QStringLiteral("53,30,0 N") << 720.0 << 720.0;
    QTest::newRow("empty") << QString() << 720.0 << 720.0;
    QTest::newRow("empty parts") << QStringLiteral(";") << 720.0 << 720.0;
    QTest::newRow("empty first part is kept") << QStringLiteral(";53,30,0;8,15,0") << 720.0 << 720.0;
    QTest::newRow("latitude too short") << QStringLiteral("53,30;8,15,0") << 720.0 << 720.0;
    QTest::newRow("longitude too short") << QStringLiteral("53,30,0;8") << 720.0 << 720.0;
    QTest::newRow("latitude out of range") << QStringLiteral("361,0,0;8,15,0") << 720.0 << 720.0;
}

void tst_KelGeoPosition::fromString()
{
    QFETCH(QString, text);
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QVERIFY(isAt(KelGeoPosition::fromString(text), latitude, longitude));
}

void tst_KelGeoPosition::debugStream()
{
    QString text;
    QDebug(&text) << KelGeoPosition(53.14375, -8.214);
    QCOMPARE(text, QStringLiteral("Lat53.14375; Lon-8.214"));
    QString rounded;
    QDebug(&rounded) << KelGeoPosition(-41.28646123, 174.772996908);
    QCOMPARE(rounded, QStringLiteral("Lat-41.286461; Lon174.773"));
}

QTEST_GUILESS_MAIN(tst_KelGeoPosition)
#include "tst_KelGeoPosition.moc"
