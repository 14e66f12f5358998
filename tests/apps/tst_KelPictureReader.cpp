// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelPictureReader.h>

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using Result = KelPictureReader::Result;

Q_DECLARE_METATYPE(Result)

/// Pictures that users choose: what counts is what is in them, and how large they say they are.
class tst_KelPictureReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kinds_data();
    void kinds();
    void sizes_data();
    void sizes();
    void pipesAndFolders();

private:
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(m_dir.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("the test's own file %s could not be written", qPrintable(name));
        return file.fileName();
    }

    QTemporaryDir m_dir;
};

namespace
{

QByteArray encoded(const char *format, const QSize &size = {30, 20}, QImage::Format pixels = QImage::Format_RGB32)
{
    QImage image(size, pixels);
    image.fill(0);
    QBuffer buffer;
    return QImageWriter(&buffer, format).write(image) ? buffer.data() : QByteArray();
}

} // namespace

void tst_KelPictureReader::kinds_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("name");
    QTest::addColumn<Result>("result");

    QTest::newRow("PNG") << encoded("png") << "a.png" << Result::Done;
    QTest::newRow("JPEG") << encoded("jpeg") << "a.jpg" << Result::Done;
    QTest::newRow("WebP") << encoded("webp") << "a.webp" << Result::Done;
    QTest::newRow("PNG by the name of JPEG") << encoded("png") << "a.jpg" << Result::Done;
    QTest::newRow("JPEG without a suffix") << encoded("jpeg") << "picture" << Result::Done;
    QTest::newRow("WebP by the name of SVG") << encoded("webp") << "a.svg" << Result::Done;

    const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9' height='9'/></svg>";
    QTest::newRow("SVG") << svg << "a.svg" << Result::UnknownKind;
    QTest::newRow("SVG by the name of PNG") << svg << "a.png" << Result::UnknownKind;
    QTest::newRow("BMP") << encoded("bmp") << "a.png" << Result::UnknownKind;
    QTest::newRow("XPM") << encoded("xpm") << "a.png" << Result::UnknownKind;
    QTest::newRow("PPM") << encoded("ppm") << "a.ppm" << Result::UnknownKind;
    QTest::newRow("empty") << QByteArray() << "a.png" << Result::UnknownKind;
    QTest::newRow("sound") << QByteArray("RIFF\x24\0\0\0WAVEfmt ", 16) << "a.webp" << Result::UnknownKind;

    QTest::newRow("PNG that is cut off in its head") << encoded("png").left(20) << "a.png" << Result::Damaged;
    QTest::newRow("JPEG that is cut off in its head") << encoded("jpeg").left(20) << "a.jpg" << Result::Damaged;
    QTest::newRow("WebP that is cut off in its head") << encoded("webp").left(16) << "a.webp" << Result::Damaged;
    QTest::newRow("SVG behind the signature of PNG") << encoded("png").left(8) + svg << "a.svg" << Result::Damaged;
}

void tst_KelPictureReader::kinds()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, name);
    QFETCH(Result, result);
    KelPictureReader reader;
    QCOMPARE(reader.read(write(name, content)), result);
    QCOMPARE(reader.image().size(), result == Result::Done ? QSize(30, 20) : QSize(0, 0));
    QCOMPARE(reader.reason().isEmpty(), result == Result::Done || result == Result::UnknownKind);
}

void tst_KelPictureReader::sizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("possible");

    QTest::newRow("widest") << QSize(32767, 1) << true;
    QTest::newRow("too wide") << QSize(32768, 1) << false;
    QTest::newRow("highest") << QSize(1, 32767) << true;
    QTest::newRow("too high") << QSize(1, 32768) << false;
    QTest::newRow("most pixels") << QSize(20000, 5000) << true;
    QTest::newRow("too many pixels") << QSize(20000, 5001) << false;
}

void tst_KelPictureReader::sizes()
{
    QFETCH(QSize, size);
    QFETCH(bool, possible);
    // A bit for each pixel: such a picture is small in every respect but its size.
    const QString name = write("a.png", encoded("png", size, QImage::Format_Mono));
    KelPictureReader reader;
    QCOMPARE(reader.read(name), possible ? Result::Done : Result::TooLarge);
    QCOMPARE(reader.image().size(), possible ? size : QSize(0, 0));
    const QString words = QStringLiteral("%1 x %2 pixels").arg(size.width()).arg(size.height());
    QCOMPARE(reader.reason(), possible ? QString() : words);
}

void tst_KelPictureReader::pipesAndFolders()
{
    const QString pipe = m_dir.filePath("pipe.png");
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    KelPictureReader reader;
    for (const QString &name : {pipe, m_dir.path(), m_dir.filePath("missing.png")}) {
        QCOMPARE(reader.read(name), Result::Unreadable);
        QVERIFY(!reader.reason().isEmpty());
    }
    QCOMPARE(reader.read(write("a.png", encoded("png"))), Result::Done);
    QVERIFY(reader.reason().isEmpty());
}

QTEST_GUILESS_MAIN(tst_KelPictureReader)
#include "tst_KelPictureReader.moc"
