// What the tests of hostile documents and of hostile servers share: the longest
// feed there may be, and what reading one may cost.

#pragma once

#include "sources/NetworkClient.h"
#include "testing/ResourceUse.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <cstdio>

namespace quire::testing {

inline constexpr qsizetype longestFeed = NetworkClient::defaultBodyCap;

inline const QByteArray feedOpening = "<rss><channel><item><book_id>1</book_id><title>A</title></item>";

// `feedOpening`, then `piece` again and again, as long as a feed may be.
inline QByteArray filledWith(const QByteArray &piece, const QByteArray &before = {})
{
    QByteArray document;
    document.reserve(longestFeed);
    document += feedOpening + before;
    while (document.size() + piece.size() <= longestFeed) {
        document += piece;
    }
    return document;
}

inline QByteArray ordinaryItem()
{
    return "<item><guid><![CDATA[https://www.goodreads.com/review/show/1]]></guid><book_id>9843479</book_id>"
           "<title>The Sea, the Sea (Booker, #1)</title>"
           "<book_large_image_url><![CDATA[https://i.gr-assets.com/images/S/books/1355943188l/9843479.jpg]]></"
           "book_large_image_url>"
           "<book_description><![CDATA["
        + QByteArray(
            "Charles Arrowby, leading light of England's <i>theatrical</i> set, retires &amp; writes.<br /><br />")
              .repeated(20)
        + "]]></book_description><book id=\"9843479\"><num_pages>495</num_pages></book><author_name>Iris "
          "Murdoch</author_name>"
          "<isbn>1101495650</isbn><user_rating>five</user_rating>"
          "<user_date_added><![CDATA[Mon, 07 Sep 2026 07:42:42 -0700]]></user_date_added>"
          "<user_shelves><![CDATA[currently-reading, classics]]></user_shelves><average_rating>4.05</average_rating>"
          "<book_published>1978</book_published></item>\n";
}

// What the reading of one did cost.
struct Cost
{
    qint64 milliseconds = 0;
    qint64 megabytes = 0; // the most that the process held
};

// The judge of both: two seconds and 200 MB.
inline bool isSoon(const Cost &cost)
{
    return cost.milliseconds <= 2000 * patience;
}
inline bool isSmall(const Cost &cost)
{
    return isInstrumented || cost.megabytes <= 200;
}

// For the controls, which go on until the judge must have seen enough. What a
// sanitizer takes for itself is none of it.
inline bool isFarTooMuch(const Cost &cost)
{
    return cost.milliseconds > 2200 * patience || (!isInstrumented && cost.megabytes > 220);
}

inline Cost measured(const char *name, const Cost &cost)
{
    std::printf("[ MEASURED ] %-28s %5lld ms %4lld MB\n", name, static_cast<long long>(cost.milliseconds),
        static_cast<long long>(cost.megabytes));
    return cost;
}

} // namespace quire::testing
