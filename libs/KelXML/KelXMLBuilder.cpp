// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLBuilder.h"

#include "KelFileReplacer.h"
#include "KelXMLSerializer.h"

#include <KelErrorHistory.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDomDocument>
#include <QDomNode>
#include <QFileInfo>
#include <QLoggingCategory>

namespace
{

constexpr int FileIndent = 1;

Q_LOGGING_CATEGORY(filesCategory, "kel.files", QtInfoMsg)

QByteArray fileContent(const QDomDocument &document)
{
    KelXMLSerializer serializer(FileIndent);
    serializer.skipDeclaration();
    return QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n") + serializer.serialize(document).toUtf8();
}

} // namespace

QDomElement KelXMLBuilder::buildDomElement(QDomNode &parent, const QString &name)
{
    if (parent.isNull())
        return {};
    return parent.appendChild(parent.ownerDocument().createElement(name)).toElement();
}

QDomElement KelXMLBuilder::buildDomElement(QDomNode &parent, const QString &name, const QString &text)
{
    QDomElement element = buildDomElement(parent, name);
    // Cleaned here already, so that a tree that is read back without being written holds the same as a file would.
    const QString usable = KelXMLSerializer::cleaned(text);
    if (!element.isNull() && !usable.isEmpty())
        element.appendChild(parent.ownerDocument().createTextNode(usable));
    return element;
}

QDomElement KelXMLBuilder::buildDomElement(QDomNode &parent, const QString &name, int value)
{
    return buildDomElement(parent, name, QString::number(value));
}

QDomElement KelXMLBuilder::buildRootElement(QDomDocument &document, const QString &name)
{
    const QDomElement oldRoot = document.documentElement();
    if (!oldRoot.isNull())
        document.removeChild(oldRoot);
    return document.appendChild(document.createElement(name)).toElement();
}

QString KelXMLBuilder::toText(const QDomNode &node, int indent)
{
    return KelXMLSerializer(indent).serialize(node);
}

bool KelXMLBuilder::saveUTF8(const QDomDocument &document, const QFileInfo &fileInfo, KelErrorHistory *errorHistory)
{
    KelFileReplacer replacer(fileInfo.filePath());
    if (replacer.replaceWith(fileContent(document)))
        return true;
    KelErrorHistory::Entry entry;
    entry.fileName = fileInfo.filePath();
    entry.message = QCoreApplication::translate("KelXMLBuilder", "cannot be written: %1").arg(replacer.errorText());
    // What no caller asks for is not lost without a trace.
    if (errorHistory)
        errorHistory->add(entry);
    else
        qCWarning(filesCategory).noquote() << entry.toString();
    return false;
}
