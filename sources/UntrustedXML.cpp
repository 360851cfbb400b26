#include "sources/UntrustedXML.h"

#include "sources/XMLEncoding.h"

#include <algorithm>

namespace quire {

namespace {

constexpr qsizetype pieceSize = 64 * 1024;
constexpr qsizetype maximumDocumentType = 64 * 1024;

// The place after `word`, or the end of the text.
qsizetype after(QByteArrayView text, QByteArrayView word)
{
    const qsizetype at = text.indexOf(word);
    return at < 0 ? text.size() : at + word.size();
}

// The place after the ">" that ends a document type declaration, with whatever
// it declares inside brackets; the size of the text when there is none.
qsizetype endOfDocumentType(QByteArrayView text)
{
    int brackets = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QByteArrayView here = text.sliced(at);
        const char c = here.front();
        if (c == '"' || c == '\'') {
            at += after(here.sliced(1), QByteArrayView(&c, 1));
        } else if (here.startsWith("<!--")) {
            at += 3 + after(here.sliced(4), "-->");
        } else if (here.startsWith("<?")) {
            at += 1 + after(here.sliced(2), "?>");
        } else if (c == '[') {
            ++brackets;
        } else if (c == ']') {
            --brackets;
        } else if (c == '>' && brackets <= 0) {
            return at + 1;
        }
    }
    return text.size();
}

} // namespace

UntrustedXML::UntrustedXML(QByteArray document)
    : m_text(utf8Document(std::move(document)))
{
}

QByteArray UntrustedXML::nextPiece()
{
    QByteArray piece;
    while (!rest().isEmpty() && piece.size() < pieceSize) {
        if (rest().front() == '<') {
            takeMarkup(piece);
        } else {
            takeText(piece);
        }
    }
    return piece;
}

void UntrustedXML::takeText(QByteArray &piece)
{
    const QByteArrayView text = rest();
    const qsizetype markup = text.indexOf('<');
    qsizetype size = markup < 0 ? text.size() : markup;
    if (size > pieceSize) {
        size = pieceSize;
        while (size > 0 && (text[size] & 0xc0) == 0x80) { // not inside a character
            --size;
        }
    }
    take(size, piece);
}

void UntrustedXML::takeMarkup(QByteArray &piece)
{
    const QByteArrayView markup = rest();
    if (markup.startsWith("<![CDATA[")) {
        takeCData(piece);
    } else if (markup.startsWith("<!--")) {
        takeComment(piece);
    } else if (markup.startsWith("<?")) {
        takeInstruction(piece);
    } else if (markup.startsWith("<!")) {
        skipDocumentType();
    } else {
        m_inProlog = false;
        takeTag(piece);
    }
}

// One that is no proper comment is for the reader to stumble over.
void UntrustedXML::takeComment(QByteArray &piece)
{
    constexpr qsizetype openingSize = 4;
    const QByteArrayView content = rest().sliced(openingSize);
    const qsizetype dashes = content.indexOf("--");
    const bool isProper
        = dashes >= 0 && content.sliced(dashes).startsWith("-->") && content.first(dashes).isValidUtf8();
    if (isProper) {
        m_text.start += openingSize + dashes + 3;
    } else {
        take(openingSize + after(content, "-->"), piece);
    }
}

// So is one without a name of letters, and a declaration that stands too late.
void UntrustedXML::takeInstruction(QByteArray &piece)
{
    const QByteArrayView markup = rest();
    const qsizetype size = after(markup, "?>");
    const QByteArrayView instruction = markup.first(size);
    const char initial = size > 2 ? instruction[2] : '\0';
    const bool isNamed = (initial >= 'a' && initial <= 'z') || (initial >= 'A' && initial <= 'Z');
    const bool isDeclaration
        = instruction.sliced(2).first(std::min<qsizetype>(3, size - 2)).compare("xml", Qt::CaseInsensitive) == 0;
    if (isNamed && !isDeclaration && instruction.endsWith("?>") && instruction.isValidUtf8()) {
        m_text.start += size;
    } else {
        take(size, piece);
    }
}

void UntrustedXML::takeCData(QByteArray &piece)
{
    constexpr qsizetype openingSize = 9;
    const qsizetype size = openingSize + after(rest().sliced(openingSize), "]]>");
    const QByteArrayView section = rest().first(size);
    if (section.isValidUtf8() || !section.endsWith("]]>")) {
        take(size, piece);
    } else {
        piece += "<![CDATA[]]>";
        m_text.start += size;
    }
}

void UntrustedXML::takeTag(QByteArray &piece)
{
    const QByteArrayView text = rest();
    int attributes = 0;
    qsizetype valueBytes = 0;
    qsizetype at = 1;
    while (at < text.size() && text[at] != '>') {
        const char c = text[at++];
        if (c == '"' || c == '\'') {
            const qsizetype value = after(text.sliced(at), QByteArrayView(&c, 1));
            valueBytes += value;
            at += value;
        } else if (c == '=') {
            ++attributes;
        }
        if (attributes > maximumAttributes || at - valueBytes > maximumNames) {
            end();
            return;
        }
    }
    take(std::min(at + 1, text.size()), piece);
}

// Only in front of the first element is this a document type declaration.
void UntrustedXML::skipDocumentType()
{
    const QByteArrayView text = rest().first(std::min(rest().size(), maximumDocumentType));
    const qsizetype size = m_inProlog && text.startsWith("<!DOCTYPE") ? endOfDocumentType(text) : text.size();
    if (size == text.size()) {
        end();
    } else {
        m_text.start += size;
        m_inProlog = false; // there may be one
    }
}

// Hands out `size` bytes. What does not decode ends the document, and the reader
// finds it as unfinished as it is.
void UntrustedXML::take(qsizetype size, QByteArray &piece)
{
    const QByteArrayView bytes = rest().first(size);
    const qsizetype decodable = size > maximumMarkup ? 0 : decodablePrefix(bytes);
    piece += bytes.first(decodable);
    if (decodable < size || size == 0) {
        end();
    } else {
        m_text.start += size;
    }
}

} // namespace quire
