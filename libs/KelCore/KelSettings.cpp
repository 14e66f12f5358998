// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelSettings.h"

#include <KelLogger.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryFile>
#include <QVariant>

namespace
{

/// The file format escapes a character by at most this many, plus the frame of a line.
constexpr qint64 BytesPerCharacter = 10;
constexpr qint64 BytesPerItem = 1000;

/// Whether the disk takes the store once more, with an item of so many characters. QSettings writes a new file and puts
/// it in the place of the old one even if a full disk has cut it off: without a word, and the host's settings are lost.
bool hasRoom(const QSettings &store, qint64 characters)
{
    const QFileInfo file(store.fileName());
    QTemporaryFile probe(file.absolutePath() + QLatin1String("/.kel-XXXXXX"));
    // A store that is no file beside which another can be made has to speak for itself.
    if (!probe.open())
        return true;
    const QByteArray content(file.size() + characters * BytesPerCharacter + BytesPerItem, ' ');
    return probe.write(content) == content.size() && probe.flush();
}

template<class T>
bool writeValue(QSettings &store, const KelConfigItem<T> &item)
{
    const QVariant value(item.value());
    // The question whether it is writable also makes the store's directory.
    if (!store.isWritable() || !hasRoom(store, item.key().size() + value.toString().size()))
        return false;
    store.setValue(item.key(), value);
    store.sync();
    // A store that could not be read in parts has another status, but is written.
    return store.status() != QSettings::AccessError;
}

template<class T>
bool saveValue(const KelConfigItem<T> &item)
{
    const QString unusable = KelSettings::unusableStore();
    if (!unusable.isEmpty()) {
        KelLogger::logSettings(QStringLiteral("cannot save \"%1\" in %2").arg(item.key(), unusable));
        return false;
    }
    QSettings store;
    const bool saved = writeValue(store, item);
    if (!saved)
        KelLogger::logSettings(QStringLiteral("cannot save \"%1\" in %2").arg(item.key(), store.fileName()));
    return saved;
}

template<class T>
QVariant storedValue(const KelConfigItem<T> &item)
{
    const QString unusable = KelSettings::unusableStore();
    if (unusable.isEmpty())
        return QSettings().value(item.key(), item.defaultValue());
    KelLogger::logSettings(QStringLiteral("cannot load \"%1\" from %2").arg(item.key(), unusable));
    return QVariant(item.defaultValue());
}

} // namespace

KelSettings::KelSettings(QObject *parent)
    : QObject(parent)
{
}

KelSettings::~KelSettings() = default;

QString KelSettings::unusableStore()
{
    // Qt tells the place of a store that it has looked into only: this one nobody has, and it is not made.
    const QString unused = QStringLiteral("Kel.no-store");
    const QString probe = QSettings(QSettings::defaultFormat(), QSettings::UserScope, unused, unused).fileName();
    const qsizetype end = probe.lastIndexOf(unused);
    const qsizetype begin = probe.left(end).lastIndexOf(unused);
    if (begin < 0)
        return {}; // a store that is no file
    const QString suffix = probe.mid(end + unused.size());
    const QString organization = probe.left(begin) + QCoreApplication::organizationName();
    const QString application = QCoreApplication::applicationName();
    for (const QString &name : {organization + suffix, organization + QLatin1Char('/') + application + suffix}) {
        const QFileInfo file(name);
        if (file.exists() && !file.isFile())
            return name;
    }
    return {};
}

void KelSettings::load(KelConfigItem<bool> &item) const
{
    item.setValue(storedValue(item).toBool());
}

void KelSettings::load(KelConfigItem<int> &item) const
{
    bool isNumber = false;
    const int number = storedValue(item).toInt(&isNumber);
    item.setValue(isNumber ? number : item.defaultValue());
}

void KelSettings::load(KelConfigItem<QString> &item) const
{
    item.setValue(storedValue(item).toString());
}

bool KelSettings::save(const KelConfigItem<bool> &item) const
{
    return saveValue(item);
}

bool KelSettings::save(const KelConfigItem<int> &item) const
{
    return saveValue(item);
}

bool KelSettings::save(const KelConfigItem<QString> &item) const
{
    return saveValue(item);
}
