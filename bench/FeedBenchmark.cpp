// What reading a feed costs at three sizes, beside a bare walk of the same bytes
// by the XML reader that keeps nothing, and with the two texts of an item that
// cost the most on their own.

#include "sources/GoodreadsXMLParser.h"
#include "sources/HTMLText.h"

#include <benchmark/benchmark.h>

#include <QXmlStreamReader>

namespace quire {

namespace {

// Of the length that the summaries of real feeds have.
QByteArray description(qsizetype number)
{
    return "A reader meets the number " + QByteArray::number(number) + " &amp; goes on.<br /><br />"
        + QByteArray("The <i>winter</i> is long, and so is the book that tells of it. ").repeated(20);
}

QByteArray feed(qsizetype count)
{
    QByteArray document = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rss version=\"2.0\">\n  <channel>\n";
    for (qsizetype i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(10'000'000 + i);
        document += "    <item>\n      <guid><![CDATA[https://books.example/review/show/" + number
            + "]]></guid>\n      <title><![CDATA[The " + number
            + "th Night (The Long Winter, #3)]]></title>\n      <book_id>" + number
            + "</book_id>\n      <book_large_image_url><![CDATA[https://images.example/books/" + number
            + "/large.jpg]]></book_large_image_url>\n      <book_description><![CDATA[" + description(i)
            + "]]></book_description>\n      <book id=\"" + number
            + "\">\n        <num_pages>495</num_pages>\n      </book>\n      <author_name>Author &amp; "
              "Other</author_name>\n"
              "      <isbn>1101495650</isbn>\n      <user_rating>4</user_rating>\n"
              "      <user_read_at><![CDATA[Mon, 06 Mar 2017 12:02:40 -0800]]></user_read_at>\n"
              "      <user_date_added><![CDATA[Mon, 06 Mar 2017 12:02:40 -0800]]></user_date_added>\n"
              "      <user_shelves><![CDATA[read, classics]]></user_shelves>\n"
              "      <average_rating>4.05</average_rating>\n      <book_published>1978</book_published>\n    </item>\n";
    }
    return document + "  </channel>\n</rss>\n";
}

void feedParse(benchmark::State &state)
{
    const QByteArray document = feed(state.range(0));
    for (auto _ : state) {
        GoodreadsXMLParser parser(QStringLiteral("read"), QUrl(QStringLiteral("https://books.example")));
        parser.parse(document);
        if (parser.books().size() != state.range(0)) {
            state.SkipWithError("not every book was read");
        }
    }
    state.SetBytesProcessed(state.iterations() * document.size());
}

void feedBareWalk(benchmark::State &state)
{
    const QByteArray document = feed(state.range(0));
    for (auto _ : state) {
        QXmlStreamReader reader(document);
        while (!reader.atEnd()) {
            benchmark::DoNotOptimize(reader.readNext());
        }
    }
    state.SetBytesProcessed(state.iterations() * document.size());
}

void feedSummary(benchmark::State &state)
{
    const QString text = QString::fromUtf8(description(1));
    for (auto _ : state) {
        benchmark::DoNotOptimize(HTMLText::plainText(text, 500));
    }
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(1'000)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(feedParse)->Apply(sizes);
BENCHMARK(feedBareWalk)->Apply(sizes);
BENCHMARK(feedSummary);

} // namespace

} // namespace quire
