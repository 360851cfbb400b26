#include "records/UUIDText.h"

#include <gtest/gtest.h>

using namespace quire;

namespace {

const QString spelt = QStringLiteral("67C8770B-44F1-410A-AB9A-F9B5446F13EE");

} // namespace

TEST(UUIDText, IsUpperCaseWithoutBracesAndReadsBack)
{
    const auto uuid = UUIDText::parsed(spelt);
    ASSERT_TRUE(uuid);
    EXPECT_EQ(UUIDText::of(*uuid), spelt);
    EXPECT_EQ(UUIDText::parsed(spelt.toLower()), uuid);
    EXPECT_EQ(UUIDText::parsed(UUIDText::of(QUuid())), QUuid());
}

TEST(UUIDText, IsFreshEachTime)
{
    EXPECT_TRUE(UUIDText::parsed(UUIDText::fresh()));
    EXPECT_NE(UUIDText::fresh(), UUIDText::fresh());
}

TEST(UUIDText, AnyOtherFormIsNone)
{
    const QString odd = QStringLiteral("67C8770B44F1-410A-AB9A-F9B5446F13EE-0");
    for (const QString &text : {QString(), u'{' + spelt + u'}', spelt.chopped(1), spelt + u'E', u' ' + spelt,
             spelt.chopped(1) + u'G', odd, QStringLiteral("yesterday")}) {
        EXPECT_EQ(UUIDText::parsed(text), std::nullopt) << qPrintable(text);
    }
}
