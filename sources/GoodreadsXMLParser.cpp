#include "sources/GoodreadsXMLParser.h"

#include "records/Text.h"

#include <QXmlStreamReader>

namespace quire {

namespace {

constexpr qsizetype pieceSize = 64 * 1024;

} // namespace

GoodreadsXMLParser::GoodreadsXMLParser(std::optional<QString> fallbackShelf, QUrl website)
    : m_fallbackShelf(std::move(fallbackShelf))
    , m_website(std::move(website))
{
}

void GoodreadsXMLParser::parse(QByteArray document, std::stop_token stop)
{
    QXmlStreamReader reader;
    reader.setNamespaceProcessing(false);
    qsizetype fed = 0;
    qsizetype mark = 0; // what was fed when the item, or outside one the token, began
    while (!stop.stop_requested()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::Invalid) {
            const bool wantsMore = reader.error() == QXmlStreamReader::PrematureEndOfDocumentError;
            if (!wantsMore || fed == document.size() || fed - mark > maximumItemSize) {
                return;
            }
            const QByteArray piece = document.mid(fed, pieceSize);
            fed += piece.size();
            reader.addData(piece);
            continue;
        }
        const bool goesOn = take(reader);
        if (!goesOn) {
            return;
        }
        if (!m_insideItem) {
            mark = fed;
        }
    }
}

// One event; false at the end of what is worth reading.
bool GoodreadsXMLParser::take(const QXmlStreamReader &reader)
{
    switch (reader.tokenType()) {
    case QXmlStreamReader::StartElement:
        startElement(reader.qualifiedName());
        return m_depth <= maximumDepth;
    case QXmlStreamReader::Characters:
        if (m_insideItem) {
            m_buffer += reader.text();
        }
        return true;
    case QXmlStreamReader::EndElement:
        endElement(reader.qualifiedName());
        return m_books.size() < maximumBooks;
    case QXmlStreamReader::DTD:
    case QXmlStreamReader::EndDocument:
        return false;
    default:
        return true;
    }
}

void GoodreadsXMLParser::startElement(QStringView name)
{
    ++m_depth;
    m_buffer.resize(0);
    if (name == u"channel") {
        m_isValidFeed = true;
    } else if (name == u"item") {
        m_item = {};
        m_insideItem = true;
    }
}

void GoodreadsXMLParser::endElement(QStringView name)
{
    --m_depth;
    if (name == u"item") {
        if (auto book = makeBook(m_item, m_fallbackShelf, m_website)) {
            m_books.append(std::move(*book));
        }
        m_item = {};
        m_insideItem = false;
    } else if (m_insideItem) {
        if (const auto element = goodreadsElement(name)) {
            m_item.at(static_cast<std::size_t>(*element)) = Text::trimmed(m_buffer);
        }
    }
    m_buffer.resize(0);
}

} // namespace quire
