#include "sources/XMLEncoding.h"

#include <QStringDecoder>

#include <algorithm>
#include <optional>

namespace quire {

namespace {

constexpr qsizetype pieceSize = 64 * 1024;
constexpr QByteArrayView byteOrderMark("\xef\xbb\xbf");

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// The XML declaration that `text` begins with, up to and with its "?>".
QByteArrayView declaration(QByteArrayView text)
{
    if (!text.startsWith("<?xml") || text.size() < 6 || !isBlank(text[5])) {
        return {};
    }
    const qsizetype end = text.first(std::min<qsizetype>(text.size(), 1024)).indexOf("?>");
    return end < 0 ? QByteArrayView() : text.first(end + 2);
}

// The name after "encoding=", in lower case; empty when there is none.
QByteArray declaredEncoding(QByteArrayView declaration)
{
    const qsizetype key = declaration.indexOf("encoding");
    if (key < 0) {
        return {};
    }
    qsizetype at = key + 8;
    while (at < declaration.size() && (isBlank(declaration[at]) || declaration[at] == '=')) {
        ++at;
    }
    if (at == declaration.size() || (declaration[at] != '"' && declaration[at] != '\'')) {
        return {};
    }
    const QByteArrayView value = declaration.sliced(at + 1);
    const qsizetype end = value.indexOf(declaration[at]);
    return end < 0 ? QByteArray() : value.first(end).toByteArray().toLower();
}

// In pieces, so that the text never stands in memory three times.
QByteArray transcoded(const QByteArray &document, QStringDecoder decoder)
{
    QByteArray utf8;
    for (qsizetype at = 0; at < document.size(); at += pieceSize) {
        const QString text
            = decoder.decode(QByteArrayView(document).sliced(at).first(std::min(pieceSize, document.size() - at)));
        utf8 += text.toUtf8();
    }
    return utf8;
}

// The family of encodings that the first bytes tell on their own, that is, by a
// byte-order mark or by how "<" is written. Nothing for what reads as ASCII.
std::optional<QStringConverter::Encoding> wideEncoding(QByteArrayView bytes)
{
    const auto told = QStringConverter::encodingForData(bytes, u'<');
    return told == QStringConverter::Utf8 ? std::nullopt : told;
}

} // namespace

XMLText utf8Document(QByteArray document)
{
    if (const auto wide = wideEncoding(document)) {
        document = transcoded(document, QStringDecoder(*wide));
    } else {
        // A document that calls itself UTF-16 and begins in ASCII is mistaken.
        const QByteArray name = declaredEncoding(declaration(document));
        if (!name.isEmpty() && !name.startsWith("utf")) {
            QStringDecoder decoder(name.constData());
            document = decoder.isValid() ? transcoded(document, std::move(decoder)) : QByteArray();
        }
    }
    const qsizetype mark = document.startsWith(byteOrderMark) ? byteOrderMark.size() : 0;
    const qsizetype head = declaration(QByteArrayView(document).sliced(mark)).size();
    return {std::move(document), mark + head};
}

qsizetype decodablePrefix(QByteArrayView bytes)
{
    if (bytes.isValidUtf8()) {
        return bytes.size();
    }
    // Forward in steps that end before a whole character, first long ones.
    qsizetype good = 0;
    for (qsizetype step : {qsizetype(4096), qsizetype(64), qsizetype(1)}) {
        while (true) {
            qsizetype next = std::min(good + step, bytes.size());
            while (next < bytes.size() && (bytes[next] & 0xc0) == 0x80) {
                ++next;
            }
            if (next == good || !bytes.sliced(good, next - good).isValidUtf8()) {
                break;
            }
            good = next;
        }
    }
    return good;
}

} // namespace quire
