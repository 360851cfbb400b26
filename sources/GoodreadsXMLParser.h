// Reads the books of a Goodreads feed, one item at a time. It never fails:
// whatever was read before a syntax error stands.
//
// The document comes from outside, so the parse also ends where it would cost
// too much: at elements nested deeper than 256, at an item of more than 4 MiB,
// after 100,000 books, twice the largest library that Quire is measured with,
// and after more elements and attributes than so many books have. No entity is
// known but the five of XML itself.
//
// Thread: any; a parser lives for one document on one thread.

#pragma once

#include "sources/GoodreadsItem.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>
#include <stop_token>

class QXmlStreamReader;

namespace quire {

class GoodreadsXMLParser
{
public:
    static constexpr int maximumDepth = 256;
    static constexpr qsizetype maximumItemSize = 4 * 1024 * 1024;
    static constexpr qsizetype maximumBooks = 100'000;
    static constexpr qsizetype maximumElements = 40 * maximumBooks;

    // fallbackShelf, website: see makeBook().
    GoodreadsXMLParser(std::optional<QString> fallbackShelf, QUrl website);

    // Reads `document`, in UTF-8, UTF-16 or the encoding it declares. Ends early
    // when `stop` is requested.
    void parse(QByteArray document, std::stop_token stop = {});

    // True once a channel element was opened: any other document is no feed.
    bool isValidFeed() const { return m_isValidFeed; }

    // In the order of the feed.
    const QList<GoodreadsFeedBook> &books() const { return m_books; }

private:
    bool take(const QXmlStreamReader &reader);
    void startElement(QStringView name);
    void endElement(QStringView name);

    const std::optional<QString> m_fallbackShelf;
    const QUrl m_website;

    QList<GoodreadsFeedBook> m_books;
    bool m_isValidFeed = false;

    GoodreadsItem m_item;
    QString m_buffer; // text since the last start or end of an element
    bool m_insideItem = false;
    int m_depth = 0;
    qsizetype m_elements = 0;
};

} // namespace quire
