#include "images/PlaceholderCover.h"

#include "images/CoverDecoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

using namespace quire;

namespace {

// Whether ink was put on the paper there, in pixels from the upper left.
bool isInked(const QImage &picture, int x, int y)
{
    return picture.pixelColor(x, y).lightnessF() < 0.7F;
}

// The rectangle around the ink below the book.
QRect inkOfTitle(const QImage &picture)
{
    QRect box;
    for (int y = 450; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (isInked(picture, x, y)) {
                box |= QRect(x, y, 1, 1);
            }
        }
    }
    return box;
}

const QRect titleBox(70, 900 - 236 - 160, 460, 160);

bool isLike(const QColor &colour, double red, double green, double blue)
{
    return std::abs(colour.redF() - red) < 0.01 && std::abs(colour.greenF() - green) < 0.01
        && std::abs(colour.blueF() - blue) < 0.01;
}

} // namespace

TEST(PlaceholderCover, TheGradientRunsFromTheUpperLeftToTheLowerRight)
{
    const QImage picture = PlaceholderCover::draw(QString());
    ASSERT_EQ(picture.size(), QSize(600, 900));
    EXPECT_TRUE(isLike(picture.pixelColor(0, 0), 0.89, 0.93, 0.97));
    EXPECT_TRUE(isLike(picture.pixelColor(599, 899), 0.96, 0.89, 0.91));
    EXPECT_TRUE(isLike(picture.pixelColor(300, 450), 0.925, 0.91, 0.94)); // half of each in the middle
    // 62 degrees down from rightward: more of the second at the lower left.
    EXPECT_GT(picture.pixelColor(0, 899).red(), picture.pixelColor(599, 0).red());
}

TEST(PlaceholderCover, TheBookStandsWhereItBelongs)
{
    const QImage picture = PlaceholderCover::draw(QString());
    for (const QPoint &corner : {QPoint(300, 430), QPoint(160, 388), QPoint(160, 250), QPoint(300, 290),
             QPoint(440, 250), QPoint(440, 388), QPoint(160, 320), QPoint(440, 320)}) {
        EXPECT_TRUE(isInked(picture, corner.x(), corner.y())) << corner.x() << "," << corner.y();
    }
    for (const QPoint &empty : {QPoint(300, 350), QPoint(140, 320), QPoint(460, 320), QPoint(300, 250)}) {
        EXPECT_FALSE(isInked(picture, empty.x(), empty.y())) << empty.x() << "," << empty.y();
    }
    EXPECT_TRUE(isInked(picture, 155, 320)); // 12 wide
    EXPECT_FALSE(isInked(picture, 152, 320));
}

TEST(PlaceholderCover, AnEmptyTitleDrawsTheBookAlone)
{
    EXPECT_TRUE(inkOfTitle(PlaceholderCover::draw(QString())).isNull());
    EXPECT_TRUE(inkOfTitle(PlaceholderCover::draw(QStringLiteral("  \n"))).isNull());
}

TEST(PlaceholderCover, AShortTitleStandsInTheMiddleAtTheTopOfItsBox)
{
    const QRect ink = inkOfTitle(PlaceholderCover::draw(QStringLiteral("Momo")));
    ASSERT_FALSE(ink.isNull());
    EXPECT_TRUE(titleBox.contains(ink));
    EXPECT_NEAR(ink.center().x(), 300, 4);
    EXPECT_LT(ink.bottom(), titleBox.top() + 50);
}

TEST(PlaceholderCover, ATitleTooLongForItsBoxEndsInAnEllipsisWithinIt)
{
    const QString words = QStringLiteral("Something wonderful ").repeated(6);
    const QImage cut = PlaceholderCover::draw(words + QStringLiteral("and more of it than fits"));
    const QRect ink = inkOfTitle(cut);
    EXPECT_TRUE(titleBox.contains(ink));
    EXPECT_GT(ink.height(), 100);
    // The ellipsis: what is cut off makes no difference.
    EXPECT_EQ(cut, PlaceholderCover::draw(words + QStringLiteral("and more of it than anybody reads")));
    // Dots on the base line close the last line and nothing follows them.
    const QImage whole = PlaceholderCover::draw(QStringLiteral("Something wonderful"));
    EXPECT_NE(cut.copy(70, ink.bottom() - 40, 460, 60), whole.copy(70, titleBox.top(), 460, 60));
}

TEST(PlaceholderCover, AHugeTitleCostsNoMoreThanALongOne)
{
    const QRect ink = inkOfTitle(PlaceholderCover::draw(QString(5'000'000, u'x')));
    EXPECT_TRUE(titleBox.contains(ink));
}

TEST(PlaceholderCover, OtherScriptsStayWithinTheBox)
{
    for (const char16_t *title :
        {u"百年の孤独 ノルウェイの森 吾輩は猫である 坊っちゃん こころ 三四郎 それから 門 彼岸過迄 行人",
            u"ألف ليلة وليلة ومئة حكاية أخرى من الشرق القديم تروى في الليالي الطويلة حتى مطلع الفجر ولا تنتهي",
            u"Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft"}) {
        const QRect ink = inkOfTitle(PlaceholderCover::draw(QString::fromUtf16(title)));
        EXPECT_FALSE(ink.isNull());
        EXPECT_TRUE(titleBox.adjusted(-4, -6, 4, 4).contains(ink)) << ink.top() << " " << ink.bottom();
    }
}

TEST(PlaceholderCover, ItIsAPngThatDecodesWhateverThreadDrawsIt)
{
    std::optional<CoverBytes> drawn;
    std::thread([&drawn] { drawn = PlaceholderCover::png(QStringLiteral("Emma")); }).join();
    ASSERT_TRUE(drawn);
    EXPECT_TRUE(drawn->bytes().startsWith("\x89PNG"));
    EXPECT_EQ(CoverDecoder::thumbnail(drawn->bytes()).size(), QSize(426, 640));
    EXPECT_EQ(drawn, PlaceholderCover::png(QStringLiteral("Emma"))); // the picture depends on the title alone
    EXPECT_NE(drawn, PlaceholderCover::png(QStringLiteral("Momo")));
}
