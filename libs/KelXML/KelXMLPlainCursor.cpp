// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLPlainCursor.h"

#include <KelXMLConversion.h>
#include <KelXMLGate.h>

#include <QChar>
#include <QIODevice>

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace
{

/// What a byte may be part of without a closer look.
enum ByteClass : unsigned char
{
    NameStart = 1,
    NameCharacter = 2, // the colon is looked at separately
    Space = 4,
    PlainText = 8, // stands for itself in a text
    PlainValue = 16, // stands for itself in an attribute, whatever the quotes
    PlainComment = 32 // is of no further meaning in a comment
};

constexpr std::array<unsigned char, 256> makeByteClasses()
{
    std::array<unsigned char, 256> classes = {};
    for (int byte = 0x20; byte < 0x7f; ++byte)
        classes[std::size_t(byte)] = PlainText | PlainValue | PlainComment;
    for (const unsigned char byte : {'\t', '\n'})
        classes[byte] = PlainText | PlainComment;
    classes['\r'] = PlainComment;
    for (const unsigned char byte : {' ', '\t', '\n', '\r'})
        classes[byte] |= Space;
    for (int byte = 'a'; byte <= 'z'; ++byte) {
        classes[std::size_t(byte)] |= NameStart | NameCharacter;
        classes[std::size_t(byte - 'a' + 'A')] |= NameStart | NameCharacter;
    }
    for (int byte = '0'; byte <= '9'; ++byte)
        classes[std::size_t(byte)] |= NameCharacter;
    classes['_'] |= NameStart | NameCharacter;
    classes['-'] |= NameCharacter;
    classes['.'] |= NameCharacter;

    for (const unsigned char byte : {'<', '&', ']'})
        classes[byte] &= static_cast<unsigned char>(~PlainText);
    for (const unsigned char byte : {'<', '&', '"', '\''})
        classes[byte] &= static_cast<unsigned char>(~PlainValue);
    classes['-'] &= static_cast<unsigned char>(~PlainComment);
    return classes;
}

constexpr std::array<unsigned char, 256> byteClasses = makeByteClasses();

inline bool is(char byte, ByteClass byteClass)
{
    return (byteClasses[static_cast<unsigned char>(byte)] & byteClass) != 0;
}

inline bool isAscii(char byte)
{
    return static_cast<unsigned char>(byte) < 0x80;
}

/// The longest reference and the longest character need no more bytes.
constexpr qsizetype lookAhead = 16;

constexpr char32_t lastCharacter = 0x10ffff;

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
}

/// The character beyond ASCII at `p`, 0 if the bytes are no UTF-8 or stand for what XML does not allow. Goes behind it.
char32_t decodeCharacter(const char *&p)
{
    const auto first = static_cast<unsigned char>(*p);
    const int length = first < 0xc2 ? 0 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : first < 0xf5 ? 4 : 0;
    if (length == 0)
        return 0;
    char32_t character = first & (0x7fu >> length);
    for (int i = 1; i < length; ++i) {
        if (!isContinuation(p[i]))
            return 0;
        character = character << 6 | (static_cast<unsigned char>(p[i]) & 0x3fu);
    }
    constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000}; // else the form is too long
    if (character < smallest[std::size_t(length)] || character > lastCharacter)
        return 0;
    if (QChar::isSurrogate(character) || character == 0xfffe || character == 0xffff
        || character == QChar::ByteOrderMark) {
        return 0;
    }
    p += length;
    return character;
}

/// The value of a hexadecimal digit or more than that.
unsigned digitValue(char byte)
{
    if (byte >= '0' && byte <= '9')
        return unsigned(byte - '0');
    if (byte >= 'a' && byte <= 'f')
        return unsigned(byte - 'a') + 10;
    if (byte >= 'A' && byte <= 'F')
        return unsigned(byte - 'A') + 10;
    return 16;
}

/// The character of a reference by number, `p` on its first digit. 0 for what is in doubt; goes behind it.
char32_t decodeNumber(const char *&p)
{
    const bool isHexadecimal = *p == 'x';
    const unsigned base = isHexadecimal ? 16 : 10;
    const char *at = isHexadecimal ? p + 1 : p;
    const char *const begin = at;
    char32_t character = 0;
    for (; digitValue(*at) < base; ++at) {
        character = character * base + digitValue(*at);
        if (character > lastCharacter)
            return 0;
    }
    // Control characters change with where they stand, and a bracket may be part of a forbidden "]]>".
    if (at == begin || *at != ';' || character < 0x20 || character == ']' || QChar::isSurrogate(character)
        || character == 0xfffe || character == 0xffff) {
        return 0;
    }
    p = at + 1;
    return character;
}

/// The character of the reference at `p`, 0 if it is in doubt; goes behind it.
char32_t decodeReference(const char *&p)
{
    struct Entity
    {
        const char *reference;
        std::size_t length;
        char32_t character;
    };
    constexpr std::array<Entity, 5> predefined = {
        {{"&lt;", 4, '<'}, {"&gt;", 4, '>'}, {"&amp;", 5, '&'}, {"&quot;", 6, '"'}, {"&apos;", 6, '\''}}};
    if (p[1] == '#') {
        const char *number = p + 2;
        const char32_t character = decodeNumber(number);
        if (character != 0)
            p = number;
        return character;
    }
    for (const Entity &entity : predefined) {
        if (std::memcmp(p, entity.reference, entity.length) == 0) {
            p += entity.length;
            return entity.character;
        }
    }
    return 0;
}

void append(QString &text, char32_t character)
{
    if (QChar::requiresSurrogates(character)) {
        text.append(QChar(QChar::highSurrogate(character)));
        text.append(QChar(QChar::lowSurrogate(character)));
    } else {
        text.append(QChar(char16_t(character)));
    }
}

double numberIn(QLatin1String text)
{
    bool isNumber = false;
    const double number = KelXMLConversion::toDouble(text, &isNumber);
    return isNumber ? number : 0.0;
}

/// Where a name ends that starts at `p`; `p` itself if there is none. A name has at most one colon, inside.
const char *nameEnd(const char *p)
{
    if (!is(*p, NameStart))
        return p;
    while (is(*p, NameCharacter))
        ++p;
    if (*p == ':' && is(p[1], NameStart)) {
        ++p;
        while (is(*p, NameCharacter))
            ++p;
    }
    return p;
}

const char *skipSpace(const char *p)
{
    while (is(*p, Space))
        ++p;
    return p;
}

} // namespace

struct KelXMLPlainCursor::Document
{
    enum class Token
    {
        Start,
        End,
        Comment,
        Doubt
    };

    /// What came of looking at a tag in the block.
    enum class Scan
    {
        Complete,
        Incomplete, // the block ends before the tag
        Doubtful
    };

    struct Attribute
    {
        const char *name;
        const char *nameEnd;
        const char *value;
        const char *valueEnd;
        bool isPlain; // nothing to replace in the value

        [[nodiscard]] bool isNamed(const char *begin, const char *end) const
        {
            return nameEnd - name == end - begin && std::memcmp(name, begin, std::size_t(end - begin)) == 0;
        }

        [[nodiscard]] bool isNamed(QStringView text) const
        {
            return QLatin1String(name, nameEnd) == text;
        }

        [[nodiscard]] bool isValue(const char *text) const
        {
            return QLatin1String(value, valueEnd) == QLatin1String(text);
        }
    };

    Document(QIODevice *theDevice, qsizetype theBlockSize)
        : device(theDevice)
        , start(theDevice->pos())
        , blockSize(qMax(theBlockSize, MINIMUM_BLOCK_SIZE))
        , block(std::make_unique<char[]>(std::size_t(blockSize + lookAhead)))
        , at(block.get())
        , end(block.get())
    {
        readProlog();
    }

    // The block. Behind its last byte stands a zero, where every scan stops.

    /// Reads on, keeping what lies from `at` on; false when nothing more came or there is no room.
    bool readMore()
    {
        if (isAtEnd || inDoubt)
            return false;
        const qsizetype kept = end - at;
        if (kept == blockSize)
            return false;
        std::memmove(block.get(), at, std::size_t(kept));
        offset += at - block.get();
        at = block.get();
        const qint64 count = device->read(block.get() + kept, blockSize - kept);
        end = block.get() + kept + qMax(count, qint64(0));
        *end = '\0';
        isAtEnd = count == 0;
        inDoubt = count < 0;
        return count > 0;
    }

    [[nodiscard]] bool hasLookAhead(const char *p) const
    {
        return isAtEnd || end - p >= lookAhead;
    }

    /// Why a scan does not go on at `p`.
    [[nodiscard]] Scan stop(const char *p) const
    {
        return p == end && !isAtEnd ? Scan::Incomplete : Scan::Doubtful;
    }

    Token doubt()
    {
        inDoubt = true;
        return Token::Doubt;
    }

    /// Scans again with more bytes as long as the block ends too early.
    template<typename Scanner>
    bool scanCompletely(Scanner scanner)
    {
        Scan scan = scanner();
        while (scan == Scan::Incomplete && readMore())
            scan = scanner();
        inDoubt = inDoubt || scan != Scan::Complete;
        return !inDoubt;
    }

    // The document.

    void readProlog()
    {
        while (end - at < MINIMUM_BLOCK_SIZE && readMore()) { }
        if (std::memcmp(at, "\xef\xbb\xbf", 3) == 0) {
            at += 3;
            byteOrderMark = 3;
        }
        if (std::memcmp(at, "<?xml", 5) == 0 && is(at[5], Space)
            && !scanCompletely([this] { return scanDeclaration(); })) {
            return;
        }
        if (!skipToMarkup() || readMarkup() != Token::Start)
            doubt();
    }

    /// Comments and blanks outside of the document element; false at the end of the document and in doubt.
    bool skipToMarkup()
    {
        while (!inDoubt) {
            at = skipSpaceOutside(at);
            if (*at == '<') {
                if (!hasLookAhead(at) && readMore())
                    continue;
                if (at[1] != '!')
                    return true;
                if (readMarkup() != Token::Comment)
                    doubt();
            } else if (at != end) {
                if (*at == '\r' && at + 1 == end && readMore())
                    continue;
                doubt();
            } else if (!readMore()) {
                return false;
            }
        }
        return false;
    }

    /// A carriage return is a blank only before a line feed.
    static const char *skipSpaceOutside(const char *p)
    {
        while ((is(*p, Space) && *p != '\r') || (*p == '\r' && p[1] == '\n'))
            ++p;
        return p;
    }

    /// Reads to the next start or end of an element. The text before it is checked, and added to `text` if there is
    /// one, but for runs of nothing but blanks.
    Token next(QString *text)
    {
        ++tokens;
        if (inDoubt || depth() == 0)
            return Token::Doubt;
        if (isEmptyElement) {
            isEmptyElement = false;
            close();
            return Token::End;
        }
        Token token = Token::Comment;
        while (token == Token::Comment) {
            if (!readRun(text))
                return doubt();
            token = readMarkup();
        }
        return token;
    }

    void readToEnd()
    {
        while (!inDoubt && depth() > 0)
            next(nullptr);
        if (!inDoubt && skipToMarkup())
            doubt();
    }

    [[nodiscard]] int depth() const
    {
        return int(openNames.size());
    }

    // Texts.

    /// A run of text up to the next markup.
    bool readRun(QString *text)
    {
        const char *p = at;
        while (*p == ' ' || *p == '\n' || *p == '\t')
            ++p;
        if (*p == '<') { // nothing but indentation, which is what most runs are
            at = p;
            return true;
        }
        const qsizetype runStart = text != nullptr ? text->size() : 0;
        while (*at != '<') {
            if (!readPiece(text))
                return false;
        }
        if (text != nullptr && QStringView(*text).sliced(runStart).trimmed().isEmpty())
            text->resize(runStart);
        return true;
    }

    /// As many plain characters as there are, and one that is not.
    bool readPiece(QString *text)
    {
        const char *p = at;
        while (is(*p, PlainText))
            ++p;
        if (text != nullptr)
            text->append(QLatin1String(at, p));
        at = p;
        if (*p == '<')
            return true;
        if (!hasLookAhead(p)) {
            readMore();
            return !inDoubt;
        }
        char32_t character = 0;
        if (*p == '&') {
            character = decodeReference(at);
        } else if (!isAscii(*p)) {
            character = decodeCharacter(at);
        } else if (*p == ']' && p[1] != ']') { // "]]>" is forbidden
            character = U']';
            ++at;
        } else if (*p == '\r' && p[1] == '\n') {
            character = U'\n';
            at += 2;
        }
        if (character != 0 && text != nullptr)
            append(*text, character);
        return character != 0;
    }

    /// The text up to the end tag of the innermost element, where that is one run of plain characters in the block.
    bool takePlainText(QLatin1String &text)
    {
        const char *p = at;
        while (is(*p, PlainText))
            ++p;
        const auto length = qsizetype(names.size() - openNames.back());
        if (isEmptyElement || *p != '<' || end - p < length + 3 || p[1] != '/' || p[length + 2] != '>'
            || std::memcmp(p + 2, names.data() + openNames.back(), std::size_t(length)) != 0) {
            return false;
        }
        ++tokens;
        text = QLatin1String(at, p);
        at = p + length + 3;
        close();
        return true;
    }

    // Tags.

    /// The tag or the comment that starts at `at`.
    Token readMarkup()
    {
        Token token = Token::Doubt;
        const bool isComplete = scanCompletely([this, &token] {
            switch (at[1]) {
            case '/':
                token = Token::End;
                return scanEndTag();
            case '!':
                token = Token::Comment;
                return scanComment();
            default:
                token = Token::Start;
                return scanStartTag();
            }
        });
        return isComplete ? token : Token::Doubt;
    }

    Scan scanStartTag()
    {
        const char *const name = at + 1;
        const char *p = nameEnd(name);
        if (p == name)
            return stop(p);
        if (p - name > MAXIMUM_NAME_LENGTH || depth() == KelXMLGate::MAXIMUM_DEPTH)
            return Scan::Doubtful;
        const char *const endOfName = p;
        const Scan scan = scanAttributes(p);
        if (scan != Scan::Complete)
            return scan;
        const bool isEmpty = *p == '/';
        if (isEmpty)
            ++p;
        if (*p != '>')
            return *p == ':' ? stop(p + 1) : stop(p);
        isEmptyElement = isEmpty;
        openNames.push_back(names.size());
        names.append(name, endOfName);
        at = p + 1;
        return Scan::Complete;
    }

    /// Attributes with blanks before each; `p` goes to what follows on them and on the blanks.
    Scan scanAttributes(const char *&p)
    {
        attributeCount = 0;
        while (true) {
            const char *const name = skipSpace(p);
            const bool isSeparate = name != p;
            p = nameEnd(name);
            if (p == name)
                return p == end ? stop(p) : Scan::Complete;
            if (!isSeparate || p - name > MAXIMUM_NAME_LENGTH || attributeCount == MAXIMUM_ATTRIBUTES)
                return Scan::Doubtful;
            const char *const endOfName = p;
            if (*p != '=')
                return *p == ':' ? stop(p + 1) : stop(p);
            ++p;
            const char quote = *p;
            if (quote != '"' && quote != '\'')
                return stop(p);
            const char *const value = ++p;
            bool isPlain = true;
            const Scan scan = scanValue(p, quote, isPlain);
            if (scan != Scan::Complete)
                return scan;
            for (int i = 0; i < attributeCount; ++i) {
                if (attributes[std::size_t(i)].isNamed(name, endOfName))
                    return Scan::Doubtful;
            }
            attributes[std::size_t(attributeCount++)] = {name, endOfName, value, p, isPlain};
            ++p;
        }
    }

    /// `p` goes to the closing quote.
    Scan scanValue(const char *&p, char quote, bool &isPlain) const
    {
        while (true) {
            while (is(*p, PlainValue))
                ++p;
            if (*p == quote)
                return Scan::Complete;
            if (*p == '"' || *p == '\'') {
                ++p;
                continue;
            }
            isPlain = false;
            if (*p == '\n' || *p == '\t') {
                ++p;
                continue;
            }
            if (*p != '&' && isAscii(*p))
                return stop(p);
            if (!hasLookAhead(p))
                return Scan::Incomplete;
            if ((*p == '&' ? decodeReference(p) : decodeCharacter(p)) == 0)
                return Scan::Doubtful;
        }
    }

    Scan scanEndTag()
    {
        if (depth() == 0)
            return Scan::Doubtful;
        const char *p = at + 2;
        const auto length = qsizetype(names.size() - openNames.back());
        if (end - p <= length)
            return isAtEnd ? Scan::Doubtful : Scan::Incomplete;
        if (std::memcmp(p, names.data() + openNames.back(), std::size_t(length)) != 0)
            return Scan::Doubtful;
        p = skipSpace(p + length);
        if (*p != '>')
            return stop(p);
        at = p + 1;
        close();
        return Scan::Complete;
    }

    Scan scanComment()
    {
        const char *p = at + 2;
        for (int i = 0; i < 2; ++i, ++p) {
            if (*p != '-')
                return stop(p);
        }
        while (true) {
            while (is(*p, PlainComment))
                ++p;
            if (isAscii(*p)) {
                if (*p != '-')
                    return stop(p);
                ++p;
                if (*p == '-') {
                    ++p;
                    break;
                }
            } else if (!hasLookAhead(p)) {
                return Scan::Incomplete;
            } else if (decodeCharacter(p) == 0) {
                return Scan::Doubtful;
            }
        }
        if (*p != '>')
            return stop(p);
        at = p + 1;
        return Scan::Complete;
    }

    /// Only what declares the form that is read here.
    Scan scanDeclaration()
    {
        const char *p = at + 5;
        const Scan scan = scanAttributes(p);
        if (scan != Scan::Complete)
            return scan;
        if (p[0] != '?')
            return stop(p);
        if (p[1] != '>')
            return stop(p + 1);
        int i = 0;
        const auto isNext = [this, &i](const char *name) {
            return i < attributeCount && attributes[std::size_t(i)].isNamed(name, name + std::strlen(name));
        };
        const auto value = [this, &i] { return attributes[std::size_t(i++)]; };
        if (!isNext("version") || !value().isValue("1.0"))
            return Scan::Doubtful;
        if (isNext("encoding")) {
            const Attribute encoding = value();
            if (QLatin1String(encoding.value, encoding.valueEnd).compare(QLatin1String("UTF-8"), Qt::CaseInsensitive)
                != 0) {
                return Scan::Doubtful;
            }
        }
        if (isNext("standalone")) {
            const Attribute standalone = value();
            if (!standalone.isValue("yes") && !standalone.isValue("no"))
                return Scan::Doubtful;
        }
        if (i != attributeCount)
            return Scan::Doubtful;
        at = p + 2;
        return Scan::Complete;
    }

    void close()
    {
        names.resize(openNames.back());
        openNames.pop_back();
    }

    // Attributes of the last start tag.

    [[nodiscard]] const Attribute *find(QStringView name) const
    {
        for (int i = 0; i < attributeCount; ++i) {
            if (attributes[std::size_t(i)].isNamed(name))
                return &attributes[std::size_t(i)];
        }
        return nullptr;
    }

    /// Line feeds and tabulators become blanks, but not where a reference stands for them.
    [[nodiscard]] static QString valueOf(const Attribute &attribute)
    {
        QString value = QStringLiteral("");
        if (attribute.isPlain)
            return value.append(QLatin1String(attribute.value, attribute.valueEnd));
        for (const char *p = attribute.value; p != attribute.valueEnd;) {
            if (*p == '&') {
                append(value, decodeReference(p));
            } else if (!isAscii(*p)) {
                append(value, decodeCharacter(p));
            } else {
                value.append(is(*p, Space) ? QLatin1Char(' ') : QLatin1Char(*p));
                ++p;
            }
        }
        return value;
    }

    // Places.

    struct Place
    {
        qint64 line = 1;
        qint64 column = 0;
        bool afterCarriageReturn = false;

        void pass(char byte)
        {
            if (byte == '\n' || byte == '\r') {
                line += byte == '\n' && afterCarriageReturn ? 0 : 1;
                column = 0;
            } else if (!isContinuation(byte)) {
                column += static_cast<unsigned char>(byte) >= 0xf0 ? 2 : 1; // in UTF-16
            }
            afterCarriageReturn = byte == '\r';
        }
    };

    /// Of the character before `position`; -1 if the device cannot go back.
    [[nodiscard]] Place placeOf(qint64 position) const
    {
        constexpr Place unknown{-1, -1, false};
        const qint64 before = device->pos();
        if (position < 0 || device->isSequential() || !device->seek(start + byteOrderMark))
            return unknown;
        Place place;
        std::array<char, 4096> bytes;
        for (qint64 left = position - byteOrderMark; left > 0;) {
            const qint64 count = device->read(bytes.data(), qMin(left, qint64(bytes.size())));
            if (count <= 0) {
                place = unknown;
                break;
            }
            for (qint64 i = 0; i < count; ++i)
                place.pass(bytes[std::size_t(i)]);
            left -= count;
        }
        device->seek(before);
        return place;
    }

    QIODevice *device;
    qint64 start;
    qsizetype blockSize;
    std::unique_ptr<char[]> block;
    const char *at; // in the block: what was read ends here
    char *end; // of what the block holds
    qint64 offset = 0; // of the block within the document
    qint64 byteOrderMark = 0; // its length
    qint64 tokens = 0;
    std::string names; // of the open elements, one after the other
    std::vector<std::size_t> openNames; // where each starts
    std::array<Attribute, MAXIMUM_ATTRIBUTES> attributes;
    int attributeCount = 0;
    bool isEmptyElement = false; // its end is still to come
    bool isAtEnd = false;
    bool inDoubt = false;
};

KelXMLPlainCursor::KelXMLPlainCursor(QIODevice *device, qsizetype blockSize)
    : m_ownDocument(std::make_unique<Document>(device, blockSize))
    , m_document(m_ownDocument.get())
{
    if (!m_document->inDoubt)
        enterElement();
}

KelXMLPlainCursor::KelXMLPlainCursor(Document *document)
    : m_document(document)
{
}

KelXMLPlainCursor::~KelXMLPlainCursor() = default;

QStringView KelXMLPlainCursor::name() const
{
    return m_name;
}

QString KelXMLPlainCursor::attribute(QStringView name) const
{
    const Document::Attribute *const attribute = isAtStart() ? m_document->find(name) : nullptr;
    return attribute != nullptr ? Document::valueOf(*attribute) : QString();
}

QString KelXMLPlainCursor::text()
{
    QString text = QStringLiteral("");
    readText(text);
    return text;
}

bool KelXMLPlainCursor::nextChild()
{
    while (!m_ended) {
        const Document::Token token = m_document->next(nullptr);
        // Deeper than a child: what was left unread of the previous child.
        if (token == Document::Token::Start && m_document->depth() == m_depth + 1) {
            if (!m_child)
                m_child.reset(new KelXMLPlainCursor(m_document));
            m_child->enterElement();
            return true;
        }
        m_ended = m_document->depth() < m_depth || m_document->inDoubt;
    }
    return false;
}

KelXMLCursor &KelXMLPlainCursor::child()
{
    Q_ASSERT(m_child);
    return *m_child;
}

qint64 KelXMLPlainCursor::line() const
{
    return m_document->placeOf(m_startTagEnd).line;
}

qint64 KelXMLPlainCursor::column() const
{
    return m_document->placeOf(m_startTagEnd).column;
}

double KelXMLPlainCursor::attributeDouble(QStringView name, double defaultValue) const
{
    const Document::Attribute *const attribute = isAtStart() ? m_document->find(name) : nullptr;
    if (attribute == nullptr)
        return defaultValue;
    return attribute->isPlain ? numberIn(QLatin1String(attribute->value, attribute->valueEnd))
                              : toDouble(Document::valueOf(*attribute));
}

double KelXMLPlainCursor::textDouble()
{
    QLatin1String plain;
    if (takePlainText(plain))
        return numberIn(plain);
    readText(m_text);
    return toDouble(m_text);
}

QDateTime KelXMLPlainCursor::textDateTime()
{
    QLatin1String plain;
    if (takePlainText(plain))
        return KelXMLConversion::toDateTime(plain);
    readText(m_text);
    return KelXMLConversion::toDateTime(m_text);
}

bool KelXMLPlainCursor::finish()
{
    m_document->readToEnd();
    return !m_document->inDoubt;
}

bool KelXMLPlainCursor::isInDoubt() const noexcept
{
    return m_document->inDoubt;
}

void KelXMLPlainCursor::enterElement()
{
    const std::size_t from = m_document->openNames.back();
    m_name.resize(0);
    m_name.append(QLatin1String(m_document->names.data() + from, qsizetype(m_document->names.size() - from)));
    m_startTagEnd = m_document->offset + (m_document->at - m_document->block.get());
    m_token = m_document->tokens;
    m_depth = m_document->depth();
    m_ended = false;
}

bool KelXMLPlainCursor::isAtStart() const
{
    return !m_ended && m_token == m_document->tokens;
}

/// Leaves the document behind the element's end tag.
void KelXMLPlainCursor::readText(QString &text)
{
    text.resize(0);
    while (!m_ended) {
        m_document->next(&text);
        m_ended = m_document->depth() < m_depth || m_document->inDoubt;
    }
}

/// The text in place, if it is plain enough for that; blanks alone are not dropped. Ends the element then.
bool KelXMLPlainCursor::takePlainText(QLatin1String &text)
{
    if (!isAtStart() || !m_document->takePlainText(text))
        return false;
    m_ended = true;
    return true;
}
