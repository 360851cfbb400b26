#include "publishing/HTMLEscape.h"
#include "publishing/ReadingListForms.h"
#include "publishing/ReadingListLink.h"
#include "publishing/ReadingListPage.h"
#include "publishing/ReadingListRenderer.h"
#include "publishing/ReadingListSize.h"

namespace quire::ReadingListRenderer {

namespace {

class Page
{
public:
    Page(const PublishingSnapshot &snapshot, const QLocale &locale)
        : m_snapshot(snapshot)
        , m_forms(locale)
    {
    }

    QString text()
    {
        m_text.reserve(expectedLength(m_snapshot));
        m_text += ReadingListPage::head;
        appendEscaped(m_forms.publishedDate(m_snapshot.generatedAt));
        m_text += ReadingListPage::ratingScale;
        appendStatistics();
        appendNavigation();
        if (!m_snapshot.currentlyReading.isEmpty()) {
            appendHeading(u"reading", u"Currently Reading", m_snapshot.currentlyReading.size());
            for (const Book &book : m_snapshot.currentlyReading) {
                appendBook(book, false);
            }
        }
        m_text += u"\n  ";
        appendHeading(u"books-read", u"Books Read", m_snapshot.booksRead.size());
        m_text += u"\n  ";
        for (const Book &book : m_snapshot.booksRead) {
            appendBook(book, true);
        }
        m_text += u"\n  ";
        if (!m_snapshot.ratedAudiobooks.isEmpty()) {
            appendHeading(u"audiobooks", u"Audiobooks", m_snapshot.ratedAudiobooks.size());
            for (const Audiobook &audiobook : m_snapshot.ratedAudiobooks) {
                appendAudiobook(audiobook);
            }
        }
        m_text += u"\n</body>\n</html>";
        return std::move(m_text);
    }

private:
    void appendStatistics()
    {
        const GoodreadsStatistics &statistics = m_snapshot.statistics;
        const auto endNumber = [this](QStringView label) {
            m_text += uR"(</div><div class="stat-label">)";
            m_text += label;
            m_text += u"</div></div>\n";
        };
        const QStringView nextNumber = uR"(    <div class="stat"><div class="stat-value">)";
        appendNumber(statistics.read);
        endNumber(u"Books Read");
        m_text += nextNumber;
        m_text += m_forms.grouped(statistics.totalPages);
        endNumber(u"Pages Read");
        m_text += nextNumber;
        m_text += m_forms.average(statistics.averageRating);
        endNumber(u"Average Rating");
        m_text += nextNumber;
        appendNumber(statistics.reading);
        endNumber(u"Reading Now");
    }

    void appendNavigation()
    {
        m_text += u"  </div>\n  <nav class=\"quick-nav\">\n    ";
        if (!m_snapshot.currentlyReading.isEmpty()) {
            m_text += uR"(<a href="#reading">Currently Reading</a>)";
        }
        m_text += u"\n    <a href=\"#books-read\">Books Read</a>\n    ";
        if (!m_snapshot.ratedAudiobooks.isEmpty()) {
            m_text += uR"(<a href="#audiobooks">Audiobooks</a>)";
        }
        m_text += u"\n  </nav>\n  ";
    }

    void appendHeading(QStringView anchor, QStringView words, qsizetype count)
    {
        m_text += uR"(<h2 id=")";
        m_text += anchor;
        m_text += uR"(">)";
        m_text += words;
        m_text += u" (";
        appendNumber(count);
        m_text += u")</h2>";
    }

    void appendBook(const Book &book, bool showRating)
    {
        appendTitle(book.title);
        m_text += u"<strong>Author:</strong> ";
        appendEscaped(book.author);
        if (book.publishedYear) {
            m_text += u" | <strong>Published:</strong> ";
            appendNumber(*book.publishedYear);
        }
        if (book.numberOfPages) {
            m_text += u" | <strong>Pages:</strong> ";
            appendNumber(*book.numberOfPages);
        }
        m_text += u"</div>\n  ";
        if (showRating) {
            m_text += uR"(<div class="rating"><strong>My Rating:</strong> )";
            m_text += m_forms.stars(book.userRating);
            if (book.averageRating) {
                m_text += u" | <strong>Goodreads Avg:</strong> ";
                m_text += m_forms.rating(*book.averageRating);
                m_text += u"/5";
            }
            m_text += u"</div>";
        }
        appendDay(u"Date Read:", book.readAt);
        appendSummary(book.summary);
        appendLink(book.goodreadsURL, u"View on Goodreads");
        m_text += u"\n</article>";
    }

    void appendAudiobook(const Audiobook &audiobook)
    {
        appendTitle(audiobook.title);
        if (audiobook.author) {
            m_text += u"<strong>Author:</strong> ";
            appendEscaped(*audiobook.author);
        }
        if (audiobook.narrator) {
            m_text += u" | <strong>Narrator:</strong> ";
            appendEscaped(*audiobook.narrator);
        }
        if (audiobook.series) {
            m_text += u" | <strong>Series:</strong> ";
            appendEscaped(*audiobook.series);
            if (audiobook.bookNumber) {
                m_text += u", Book ";
                appendNumber(*audiobook.bookNumber);
            }
        }
        m_text += u"</div>\n  <div class=\"rating\"><strong>My Rating:</strong> ";
        m_text += m_forms.stars(audiobook.userRating.value_or(0));
        m_text += u"</div>\n  ";
        appendDay(u"Date Finished:", audiobook.finishedAt);
        appendSummary(audiobook.summary);
        appendLink(audiobook.audibleURL, u"Listen on Audible");
        m_text += u"\n</article>";
    }

    // Pieces of a card. ------------------------------------------------------------------

    void appendTitle(const QString &title)
    {
        m_text += u"<article class=\"book\">\n  <h3>";
        appendEscaped(title);
        m_text += u"</h3>\n  <div class=\"meta\">";
    }

    void appendDay(QStringView label, const std::optional<QString> &date)
    {
        if (const auto day = m_forms.day(date)) {
            m_text += uR"(<div class="date"><strong>)";
            m_text += label;
            m_text += u"</strong> ";
            appendEscaped(*day);
            m_text += u"</div>";
        }
    }

    void appendSummary(const std::optional<QString> &summary)
    {
        if (summary) {
            m_text += uR"(<p class="summary">)";
            appendEscaped(*summary);
            m_text += u"</p>";
        }
    }

    void appendLink(const std::optional<Url> &url, QStringView words)
    {
        if (url && isLinkable(*url)) {
            m_text += uR"(<div class="link"><a href=")";
            appendEscaped(url->text());
            m_text += uR"(">)";
            m_text += words;
            m_text += u"</a></div>";
        }
    }

    void appendEscaped(QStringView text) { appendEscapedHTML(m_text, text); }

    void appendNumber(qint64 number) { appendPlainNumber(m_text, number); }

    const PublishingSnapshot &m_snapshot;
    ReadingListForms m_forms;
    QString m_text;
};

} // namespace

QString html(const PublishingSnapshot &snapshot, const QLocale &locale)
{
    return Page(snapshot, locale).text();
}

} // namespace quire::ReadingListRenderer
