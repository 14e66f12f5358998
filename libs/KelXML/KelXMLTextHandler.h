// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLTEXTHANDLER_H
#define KELXMLTEXTHANDLER_H

#include <KelXMLGlobal.h>

#include <QStringView>

class QXmlStreamAttributes;

/// What KelXMLTextReader reads goes here, in document order.
class KELXML_EXPORT KelXMLTextHandler
{
public:
    KelXMLTextHandler() = default;
    KelXMLTextHandler(const KelXMLTextHandler &) = delete;
    KelXMLTextHandler &operator=(const KelXMLTextHandler &) = delete;
    virtual ~KelXMLTextHandler();

    /// A document begins. It may begin a second time: what came until then is to be forgotten.
    virtual void begin() = 0;
    /// The name is qualified and as written. It and the attributes are valid during the call.
    virtual void startElement(QStringView name, const QXmlStreamAttributes &attributes) = 0;
    /// A text node of the tree: of the element that was started last and has not ended. Where it stays, it lies in the
    /// document itself and is valid as long as that; otherwise during the call.
    virtual void text(QStringView text, bool stays) = 0;
    /// The innermost element ends.
    virtual void endElement() = 0;
};

#endif
