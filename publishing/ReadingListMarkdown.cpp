#include "publishing/MarkdownEscape.h"
#include "publishing/ReadingListForms.h"
#include "publishing/ReadingListLink.h"
#include "publishing/ReadingListRenderer.h"
#include "publishing/ReadingListSize.h"

#include <QStringView>

namespace quire::ReadingListRenderer {

namespace {

constexpr QStringView introduction(uR"( ET

This is a structured snapshot of what I have been reading and listening to.

## How I Rate Books

My scale is intentionally different from the usual five-star system: two stars still means a good, enjoyable book.

1. One star - Bad. I finished it, but disliked it. This is extremely rare. A DNF is worse: I reserve that for books I disliked enough that I could not finish them.
2. Two stars - Good. Enjoyable, but probably not a reread. Lighthearted romances and hockey romances often land here, even though they can be exactly what I am in the mood for.
3. Three stars - Very good. I really enjoyed it and will probably read it again someday.
4. Four stars - Great. I loved it, will definitely reread it, and will probably listen to the audiobook.
5. Five stars - Exceptional. A book I will read repeatedly, listen to on audio, and use as a reason to seek out the author's other work.

Audiobook ratings are not directly comparable to book ratings. They score both the book and the narration.

## Statistics

- Books Read: )");

// Documents are made by appending to one text: a list of ten thousand titles has
// a quarter of a million pieces.
class Document
{
public:
    Document(const PublishingSnapshot &snapshot, const QLocale &locale)
        : m_snapshot(snapshot)
        , m_forms(locale)
    {
    }

    QString text()
    {
        m_text.reserve(expectedLength(m_snapshot));
        m_text += u"# Corin's Reading List\n\nLast updated: ";
        m_text += m_forms.publishedDate(m_snapshot.generatedAt);
        m_text += introduction;
        appendStatistics();
        if (!m_snapshot.currentlyReading.isEmpty()) {
            appendHeading(u"Currently Reading", m_snapshot.currentlyReading.size());
            for (const Book &book : m_snapshot.currentlyReading) {
                appendBook(book, false);
            }
        }
        appendHeading(u"Books Read", m_snapshot.booksRead.size());
        for (const Book &book : m_snapshot.booksRead) {
            appendBook(book, true);
        }
        if (!m_snapshot.ratedAudiobooks.isEmpty()) {
            appendHeading(u"Audiobooks", m_snapshot.ratedAudiobooks.size());
            for (const Audiobook &audiobook : m_snapshot.ratedAudiobooks) {
                appendAudiobook(audiobook);
            }
        }
        m_text.truncate(QStringView(m_text).trimmed().size()); // it begins with its heading
        m_text += u'\n';
        return std::move(m_text);
    }

private:
    void appendStatistics()
    {
        const GoodreadsStatistics &statistics = m_snapshot.statistics;
        appendNumber(statistics.read);
        m_text += u"\n- Pages Read: ";
        m_text += m_forms.grouped(statistics.totalPages);
        m_text += u"\n- Average Rating: ";
        m_text += m_forms.average(statistics.averageRating);
        m_text += u"\n- Reading Now: ";
        appendNumber(statistics.reading);
        endBlock();
    }

    void appendHeading(QStringView words, qsizetype count)
    {
        m_text += u"## ";
        m_text += words;
        m_text += u" (";
        appendNumber(count);
        m_text += u')';
        endBlock();
    }

    void appendBook(const Book &book, bool isRead)
    {
        appendTitle(book.title);
        if (!book.author.isEmpty()) {
            appendFact(u"Author: ");
            appendEscaped(book.author);
        }
        if (book.publishedYear) {
            appendFact(u"Published: ");
            appendNumber(*book.publishedYear);
        }
        if (book.numberOfPages) {
            appendFact(u"Pages: ");
            appendNumber(*book.numberOfPages);
        }
        endFacts();
        if (isRead) {
            m_text += u"My Rating: ";
            appendRating(book.userRating);
            if (book.averageRating) {
                m_text += u" | Goodreads Average: ";
                appendRating(*book.averageRating);
            }
            endBlock();
            appendDay(u"Date Read: ", book.readAt);
        }
        appendQuoted(book.summary);
        appendLink(u"[View on Goodreads](", book.goodreadsURL);
    }

    void appendAudiobook(const Audiobook &audiobook)
    {
        appendTitle(audiobook.title);
        if (audiobook.author) {
            appendFact(u"Author: ");
            appendEscaped(*audiobook.author);
        }
        if (audiobook.narrator) {
            appendFact(u"Narrator: ");
            appendEscaped(*audiobook.narrator);
        }
        if (audiobook.series) {
            appendFact(u"Series: ");
            appendEscaped(*audiobook.series);
            if (audiobook.bookNumber) {
                m_text += u", Book ";
                appendNumber(*audiobook.bookNumber);
            }
        }
        endFacts();
        m_text += u"My Rating: ";
        appendRating(audiobook.userRating.value_or(0));
        endBlock();
        appendDay(u"Date Finished: ", audiobook.finishedAt);
        appendQuoted(audiobook.summary);
        appendLink(u"[Listen on Audible](", audiobook.audibleURL);
    }

    // Blocks, each with the blank line that follows it. -----------------------------

    void endBlock() { m_text += u"\n\n"; }

    void appendTitle(const QString &title)
    {
        m_text += u"### ";
        appendEscaped(title);
        endBlock();
        m_factsStart = m_text.size();
    }

    void appendFact(QStringView label)
    {
        if (m_text.size() > m_factsStart) {
            m_text += u" | ";
        }
        m_text += label;
    }

    void endFacts()
    {
        if (m_text.size() > m_factsStart) {
            endBlock();
        }
    }

    void appendRating(double rating)
    {
        m_text += m_forms.rating(rating);
        m_text += u"/5";
    }

    void appendDay(QStringView label, const std::optional<QString> &date)
    {
        if (const auto day = m_forms.day(date)) {
            m_text += label;
            m_text += *day;
            endBlock();
        }
    }

    void appendQuoted(const std::optional<QString> &summary)
    {
        if (!summary || summary->isEmpty()) {
            return;
        }
        appendQuotedMarkdown(m_text, *summary);
        endBlock();
    }

    void appendLink(QStringView words, const std::optional<Url> &url)
    {
        if (url && isLinkable(*url)) {
            m_text += words;
            m_text += url->text();
            m_text += u')';
            endBlock();
        }
    }

    void appendEscaped(QStringView text) { appendEscapedMarkdown(m_text, text); }

    void appendNumber(qint64 number) { appendPlainNumber(m_text, number); }

    const PublishingSnapshot &m_snapshot;
    ReadingListForms m_forms;
    QString m_text;
    qsizetype m_factsStart = 0;
};

} // namespace

QString markdown(const PublishingSnapshot &snapshot, const QLocale &locale)
{
    return Document(snapshot, locale).text();
}

} // namespace quire::ReadingListRenderer
