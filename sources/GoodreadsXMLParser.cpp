#include "sources/GoodreadsXMLParser.h"

#include "records/Text.h"
#include "sources/UntrustedXML.h"

#include <QXmlStreamReader>

namespace quire {

GoodreadsXMLParser::GoodreadsXMLParser(std::optional<QString> fallbackShelf, QUrl website)
    : m_fallbackShelf(std::move(fallbackShelf))
    , m_website(std::move(website))
{
}

void GoodreadsXMLParser::parse(QByteArray document, std::stop_token stop)
{
    UntrustedXML bytes(std::move(document));
    QXmlStreamReader reader;
    reader.setNamespaceProcessing(false);
    qsizetype taken = 0; // since the item, or outside one the latest token, began
    while (!stop.stop_requested()) {
        const auto token = reader.readNext();
        if (token != QXmlStreamReader::Invalid) {
            const bool wasInside = m_insideItem;
            if (!take(reader)) {
                return;
            }
            if (!wasInside) {
                taken = 0;
            }
            continue;
        }
        const QByteArray piece = bytes.nextPiece();
        const bool wantsMore = reader.error() == QXmlStreamReader::PrematureEndOfDocumentError;
        taken += piece.size();
        if (!wantsMore || piece.isEmpty() || taken > maximumItemSize) {
            return;
        }
        reader.addData(piece);
    }
}

// One event; false at the end of what is worth reading.
bool GoodreadsXMLParser::take(const QXmlStreamReader &reader)
{
    switch (reader.tokenType()) {
    case QXmlStreamReader::StartElement:
        m_elements += 1 + reader.attributes().size();
        startElement(reader.qualifiedName());
        return m_depth <= maximumDepth && m_elements <= maximumElements;
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
