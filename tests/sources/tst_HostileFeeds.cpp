// Documents that mean no good: each ends within two seconds and 200 MB, with
// what the feed's rules say of it. A process of their own, so that what servers
// left in the heap is not counted.

#include "HostileFeeds.h"

#include "sources/GoodreadsXMLParser.h"

#include <QStringEncoder>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstring>

#include <malloc.h>

using namespace quire;
using namespace quire::testing;

namespace {

struct HostileFeed
{
    const char *name;
    QByteArray (*document)();
    qsizetype books; // that the reader gets of it
};

void PrintTo(const HostileFeed &feed, std::ostream *out)
{
    *out << feed.name;
}

QByteArray attributes(int count)
{
    QByteArray tag = "<a";
    for (int i = 0; i < count; ++i) {
        tag += " a" + QByteArray::number(i) + "=''";
    }
    return tag + "/>";
}

QByteArray itemWith(const char *element, const QByteArray &text)
{
    return feedOpening + "<item><book_id>2</book_id><" + element + "><![CDATA[" + text + "]]></" + element + "></item>";
}

QByteArray entityBomb()
{
    QByteArray document = "<!DOCTYPE rss [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 30; ++i) {
        const QByteArray inner = "&a" + QByteArray::number(i - 1) + ";";
        document += "<!ENTITY a" + QByteArray::number(i) + " \"" + inner + inner + "\">";
    }
    return document + "]>" + feedOpening + "<item><book_id>2</book_id><title>&a29;</title></item>";
}

const std::vector<HostileFeed> feeds{
    {"OrdinaryItems", [] { return filledWith(ordinaryItem()); },
        1 + (longestFeed - feedOpening.size()) / ordinaryItem().size()},
    {"TinyItems", [] { return filledWith("<item><book_id>1</book_id></item>"); }, GoodreadsXMLParser::maximumBooks},
    {"Nesting410KiB", [] { return feedOpening + QByteArray("<a><b>").repeated(70'000); }, 1},
    {"Nesting", [] { return filledWith("<a>"); }, 1},
    {"ItemsInItems", [] { return filledWith("<item>"); }, 1},
    {"Siblings", [] { return filledWith("<a/>"); }, 1},
    {"OneText", [] { return filledWith("x"); }, 1},
    {"OneTextInAnItem", [] { return filledWith("x", "<item><book_id>2</book_id><title>"); }, 1},
    {"WhiteSpace", [] { return filledWith(" "); }, 1},
    {"EscapedText", [] { return filledWith("&amp;", "<item><title>"); }, 1},
    {"OneCData", [] { return filledWith("x", "<item><title><![CDATA["); }, 1},
    {"ManyCData", [] { return filledWith("<![CDATA[]]>", "<item><title>"); }, 1},
    {"OneComment", [] { return filledWith("x", "<!--"); }, 1},
    {"ManyComments", [] { return filledWith("<!---->"); }, 1},
    {"ManyInstructions", [] { return filledWith("<?a?>"); }, 1},
    {"OneInstruction", [] { return filledWith("x", "<?a "); }, 1},
    {"OneName", [] { return filledWith("x", "<"); }, 1},
    {"OneAttributeValue", [] { return filledWith("x", "<a b='"); }, 1},
    {"OneTagOfAttributes", [] { return filledWith(" a='b'", "<a"); }, 1},
    {"TagsOfAttributes", [] { return filledWith(attributes(32)); }, 1},
    {"OpenAngles", [] { return filledWith("<"); }, 1},
    {"OpenAnglesInADescription", [] { return itemWith("book_description", QByteArray("<").repeated(4'000'000)); }, 2},
    {"LineBreaksInADescription", [] { return itemWith("book_description", QByteArray("< br").repeated(1'000'000)); },
        2},
    {"AmpersandsInADescription", [] { return itemWith("book_description", QByteArray("&amp;").repeated(800'000)); }, 2},
    {"MarksInADescription", [] { return itemWith("book_description", QByteArray("\xcc\x81").repeated(2'000'000)); }, 2},
    {"BracketsInATitle", [] { return itemWith("title", QByteArray("(#").repeated(1'000'000) + "x)"); }, 2},
    {"BlanksInATitle", [] { return itemWith("title", "a" + QByteArray(4'000'000, ' ') + "(#1) b)"); }, 2},
    {"EntityBomb", entityBomb, 1},
    {"DeclaredEntities",
        [] { return "<!DOCTYPE rss [" + QByteArray("<!ENTITY aaaa 'b'>").repeated(3'600'000) + "]>" + feedOpening; },
        0},
    {"QuotesInTheDocumentType", [] { return "<!DOCTYPE rss " + QByteArray("'").repeated(60'000'001) + feedOpening; },
        0},
    {"BadBytes", [] { return filledWith("\xff"); }, 1},
    {"BadBytesInCData", [] { return filledWith("<![CDATA[\xff]]>"); }, 1},
    {"Utf16",
        [] {
            QStringEncoder encode(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
            QByteArray document = encode.encode(QString::fromUtf8(feedOpening));
            const QByteArray item = QStringEncoder(QStringConverter::Utf16LE).encode(QString::fromUtf8(ordinaryItem()));
            document.reserve(longestFeed);
            while (document.size() + item.size() <= longestFeed) {
                document += item;
            }
            return document;
        },
        1 + (longestFeed - 2 * feedOpening.size() - 2) / (2 * ordinaryItem().size())},
    {"Zeros", [] { return QByteArray(longestFeed, '\0'); }, 0},
};

// The control: a reader with none but honest feeds in mind. It keeps every element
// and every text, and looks for the end of each tag in a text anew.
class TrustingReader
{
public:
    Cost parse(const QByteArray &document)
    {
        const ResourceUse use;
        const auto cost = [&use] { return Cost{use.processorMilliseconds(), use.peakMegabytes()}; };
        QXmlStreamReader reader;
        for (qsizetype read = 0; read < document.size() && !isFarTooMuch(cost()); read += step) {
            reader.addData(document.mid(read, step));
            while (!reader.atEnd()) {
                reader.readNext();
                m_elements.append({reader.name().toString(), withoutTags(reader.text().toString(), use)});
            }
        }
        return cost();
    }

private:
    static constexpr qsizetype step = 64 * 1024;

    struct Element
    {
        QString name;
        QString text;
    };

    static QString withoutTags(QString text, const ResourceUse &use)
    {
        for (qsizetype tag = 0; (tag = text.indexOf(u'<', tag)) >= 0;) {
            const qsizetype end = text.indexOf(u'>', tag);
            if (end >= 0) {
                text.remove(tag, end + 1 - tag);
            } else if (isFarTooMuch({use.processorMilliseconds(), 0})) {
                break;
            } else {
                ++tag;
            }
        }
        return text;
    }

    QList<Element> m_elements;
};

QByteArray documentOf(const char *name)
{
    const auto feed = std::find_if(
        feeds.begin(), feeds.end(), [name](const HostileFeed &other) { return std::strcmp(other.name, name) == 0; });
    return feed->document();
}

class HostileFeedTest : public ::testing::TestWithParam<HostileFeed>
{
};

} // namespace

TEST_P(HostileFeedTest, IsReadInBoundedTimeAndMemory)
{
    QByteArray document = GetParam().document();
    ASSERT_LE(document.size(), longestFeed);
    malloc_trim(0);
    const ResourceUse use;
    GoodreadsXMLParser parser(std::nullopt, QUrl(QStringLiteral("https://www.goodreads.com")));
    parser.parse(std::move(document));
    const Cost cost = measured(GetParam().name, {use.processorMilliseconds(), use.peakMegabytes()});
    EXPECT_TRUE(isSoon(cost));
    EXPECT_TRUE(isSmall(cost));
    EXPECT_EQ(parser.books().size(), GetParam().books);
}

INSTANTIATE_TEST_SUITE_P(Documents, HostileFeedTest, ::testing::ValuesIn(feeds),
    [](const auto &test) { return std::string(test.param.name); });

TEST(HostileFeedControl, AReaderThatKeepsEveryElementIsCaught)
{
    if (isInstrumented) {
        GTEST_SKIP() << "memory is not measured here";
    }
    for (const char *name : {"Nesting", "Siblings"}) {
        const QByteArray document = documentOf(name);
        malloc_trim(0);
        EXPECT_FALSE(isSmall(measured(name, TrustingReader().parse(document)))) << name;
    }
}

TEST(HostileFeedControl, AReaderThatLooksForTheEndOfEachTagAnewIsCaught)
{
    if (isInstrumented) {
        GTEST_SKIP() << "it has so much time here that the test would take a minute";
    }
    const char *const name = "OpenAnglesInADescription";
    EXPECT_FALSE(isSoon(measured(name, TrustingReader().parse(documentOf(name)))));
}
