#include "sources/GoodreadsItem.h"

#include "records/Text.h"
#include "sources/HTMLText.h"
#include "sources/ServiceURL.h"

#include <QUrl>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quire {

namespace {

constexpr qsizetype summaryLimit = 500;

using Named = std::pair<QStringView, GoodreadsElement>;
constexpr std::array<Named, goodreadsElementCount> names{{
    {u"book_id", GoodreadsElement::BookID},
    {u"title", GoodreadsElement::Title},
    {u"book_large_image_url", GoodreadsElement::LargeImageURL},
    {u"book_image_url", GoodreadsElement::ImageURL},
    {u"book_description", GoodreadsElement::Description},
    {u"isbn", GoodreadsElement::ISBN},
    {u"user_shelves", GoodreadsElement::Shelves},
    {u"author_name", GoodreadsElement::Author},
    {u"user_rating", GoodreadsElement::Rating},
    {u"average_rating", GoodreadsElement::AverageRating},
    {u"num_pages", GoodreadsElement::Pages},
    {u"book_published", GoodreadsElement::Published},
    {u"user_read_at", GoodreadsElement::ReadAt},
    {u"user_date_added", GoodreadsElement::DateAdded},
}};

const QString &text(const GoodreadsItem &item, GoodreadsElement element)
{
    return item.at(static_cast<std::size_t>(element));
}

// A finite number with a decimal point, and nothing round it.
std::optional<double> number(const QString &text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<Url> cover(const GoodreadsItem &item)
{
    const QString &large = text(item, GoodreadsElement::LargeImageURL);
    const QString &chosen = large.isEmpty() ? text(item, GoodreadsElement::ImageURL) : large;
    if (chosen.contains(QStringLiteral("nophoto"), Qt::CaseInsensitive)) {
        return std::nullopt;
    }
    return Url::parse(chosen);
}

std::optional<QString> isbn(const QString &text)
{
    const auto value = Text::nonEmptyValue(text);
    return value == QStringLiteral("0") ? std::nullopt : value; // what the feed says for "none"
}

QString shelf(const QString &shelves, const std::optional<QString> &fallbackShelf)
{
    const QString list = shelves.toLower();
    for (const auto &known :
        {QStringLiteral("currently-reading"), QStringLiteral("to-read"), QStringLiteral("did-not-finish")}) {
        if (list.contains(known)) {
            return known;
        }
    }
    return fallbackShelf.value_or(QStringLiteral("read"));
}

// Escaped as one segment of a path, so that any id gives an address.
std::optional<Url> page(const QString &bookID, const QUrl &website)
{
    return ServiceURL::address(
        website, QStringLiteral("/book/show/") + QString::fromLatin1(QUrl::toPercentEncoding(bookID)));
}

bool hasNumberSignWithDigits(QStringView text)
{
    for (qsizetype at = text.indexOf(u'#'); at >= 0; at = text.indexOf(u'#', at + 1)) {
        const QStringView after = text.sliced(at + 1);
        if (after.isEmpty()) {
            return false;
        }
        const bool isPair = after.size() > 1 && after[0].isHighSurrogate() && after[1].isLowSurrogate();
        if (QChar::isDigit(isPair ? QChar::surrogateToUcs4(after[0], after[1]) : after[0].unicode())) {
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<GoodreadsElement> goodreadsElement(QStringView name)
{
    const auto found
        = std::find_if(names.begin(), names.end(), [name](const Named &known) { return known.first == name; });
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

std::optional<GoodreadsFeedBook> makeBook(
    const GoodreadsItem &item, const std::optional<QString> &fallbackShelf, const QUrl &website)
{
    const QString &id = text(item, GoodreadsElement::BookID);
    if (id.isEmpty()) {
        return std::nullopt;
    }
    GoodreadsFeedBook book;
    book.goodreadsID = id;
    book.title = replacingSeriesSuffix(HTMLText::decode(text(item, GoodreadsElement::Title)));
    book.author = HTMLText::decode(text(item, GoodreadsElement::Author));
    book.isbn = isbn(text(item, GoodreadsElement::ISBN));
    book.shelf = shelf(text(item, GoodreadsElement::Shelves), fallbackShelf);
    book.userRating = number(text(item, GoodreadsElement::Rating)).value_or(0);
    book.averageRating = number(text(item, GoodreadsElement::AverageRating));
    book.numberOfPages = Text::decimalInteger(text(item, GoodreadsElement::Pages));
    book.summary = Text::nonEmptyValue(HTMLText::plainText(text(item, GoodreadsElement::Description), summaryLimit));
    book.goodreadsURL = page(id, website);
    book.publishedYear = Text::decimalInteger(text(item, GoodreadsElement::Published));
    book.coverURL = cover(item);
    book.goodreadsImageURL = book.coverURL;
    book.readAt = Text::nonEmptyValue(text(item, GoodreadsElement::ReadAt));
    book.dateAdded = Text::nonEmptyValue(text(item, GoodreadsElement::DateAdded));
    return book;
}

// \s*\([^)]*#\d+[^)]*\)\s*$ taken away, in one look from the end: the note is
// the last parenthesis, from its first "(" that no ")" follows before the last.
QString replacingSeriesSuffix(const QString &title)
{
    QString text = Text::trimmed(title);
    if (!text.endsWith(u')')) {
        return text;
    }
    const QStringView all(text);
    const qsizetype close = all.size() - 1;
    const qsizetype otherClose = all.first(close).lastIndexOf(u')');
    const qsizetype open = all.indexOf(u'(', otherClose + 1);
    if (open < 0 || !hasNumberSignWithDigits(all.sliced(open + 1, close - open - 1))) {
        return text;
    }
    return Text::trimmed(text.left(open));
}

} // namespace quire
