#include "updates/QuireUpdateManifest.h"

#include "sources/JSONDecodingError.h"
#include "testing/ThrownFailure.h"
#include "updates/QuireUpdateCheckError.h"
#include "updates/QuireUpdateService.h"

#include <gtest/gtest.h>

using namespace quire;
using namespace quire::testing;

namespace {

const QUrl host(QStringLiteral("https://quire.example"));

QuireUpdateManifest manifestOf(const QString &version = QStringLiteral("1.2"), qint64 build = 8,
    const QString &page = QStringLiteral("https://quire.example/quire/download"))
{
    return {version, build, Url::parse(page).value()};
}

QuireUpdateManifest leadingTo(const QString &page)
{
    return manifestOf(QStringLiteral("1.2"), 8, page);
}

void expectAccepted(const QuireUpdateManifest &manifest, const QUrl &endpoint = host)
{
    EXPECT_NO_THROW(manifest.validate(endpoint)) << manifest.encode().constData();
}

void expectRefused(const QuireUpdateManifest &manifest, const QUrl &endpoint = host)
{
    SCOPED_TRACE(manifest.encode().constData());
    const auto failure = thrownBy<QuireUpdateCheckError>([&] { manifest.validate(endpoint); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->description(), QStringLiteral("The update server returned an invalid download address."));
}

JSONDecodingError::Kind kindOf(const QByteArray &json)
{
    return thrownBy<JSONDecodingError>([&json] { QuireUpdateManifest::decode(json); }).value().kind();
}

std::strong_ordering compared(QStringView a, QStringView b)
{
    return QuireUpdateService::compareVersions(a, b);
}

constexpr auto less = std::strong_ordering::less;
constexpr auto equal = std::strong_ordering::equal;
constexpr auto greater = std::strong_ordering::greater;

} // namespace

TEST(QuireUpdateManifest, ReadsWhatItWrites)
{
    const auto manifest = manifestOf(QStringLiteral("1.2.3.4"), 9'000'000'000'000'000'000);

    EXPECT_EQ(QuireUpdateManifest::decode(manifest.encode()), manifest);
    EXPECT_NE(manifest, manifestOf());
}

TEST(QuireUpdateManifest, ReadsAManifestWithMembersOfItsFuture)
{
    EXPECT_EQ(QuireUpdateManifest::decode(" {\"notes\": [1, {}], \"version\": \"1.2\", \"build\": 8,\n"
                                          "\"downloadPage\": \"https://quire.example/quire/download\"}\n"),
        manifestOf());
}

TEST(QuireUpdateManifest, RequiresEveryMember)
{
    const QByteArray page = R"("downloadPage":"https://quire.example/quire")";

    EXPECT_EQ(kindOf(R"({"version":"1.2",)" + page + "}"), JSONDecodingError::Kind::MissingMember);
    EXPECT_EQ(kindOf(R"({"build":1,)" + page + "}"), JSONDecodingError::Kind::MissingMember);
    EXPECT_EQ(kindOf(R"({"version":"1.2","build":1})"), JSONDecodingError::Kind::MissingMember);
}

TEST(QuireUpdateManifest, RefusesMembersOfAnotherType)
{
    const QByteArray page = R"("downloadPage":"https://quire.example/quire")";
    using Kind = JSONDecodingError::Kind;

    EXPECT_EQ(kindOf(R"({"version":1.2,"build":1,)" + page + "}"), Kind::WrongType);
    EXPECT_EQ(kindOf(R"({"version":null,"build":1,)" + page + "}"), Kind::WrongType);
    EXPECT_EQ(kindOf(R"({"version":"1.2","build":"1",)" + page + "}"), Kind::WrongType);
    EXPECT_EQ(kindOf(R"({"version":"1.2","build":1.5,)" + page + "}"), Kind::WrongType);
    EXPECT_EQ(kindOf(R"({"version":"1.2","build":1e30,)" + page + "}"), Kind::WrongType);
    EXPECT_EQ(kindOf(R"({"version":"1.2","build":true,)" + page + "}"), Kind::WrongType);
    EXPECT_EQ(kindOf(R"({"version":"1.2","build":1,"downloadPage":["https://a"]})"), Kind::WrongType);
    EXPECT_EQ(kindOf(R"({"version":"1.2","build":1,"downloadPage":""})"), Kind::WrongType);
    EXPECT_EQ(kindOf(R"({"version":"1.2","build":1,"downloadPage":"no address"})"), Kind::WrongType);
    EXPECT_EQ(kindOf("[]"), Kind::WrongType);
}

TEST(QuireUpdateManifest, RefusesWhatIsNoJSON)
{
    for (const QByteArray &text : {QByteArray(), QByteArray("<html>"), QByteArray(R"({"version":"1.2")"),
             QByteArray(65'536, '['), QByteArray("\xff\xfe{}"), QByteArray("{\"version\":\"1.2\xff\"}")}) {
        EXPECT_EQ(kindOf(text), JSONDecodingError::Kind::Syntax) << text.left(20).constData();
    }
}

TEST(QuireUpdateManifest, AcceptsTwoToFourDottedNumbers)
{
    for (const auto *version : {u"1.2", u"1.2.3", u"1.2.3.4", u"0.0", u"01.002", u"99999999999999999999.1"}) {
        expectAccepted(manifestOf(QString::fromUtf16(version)));
    }
}

TEST(QuireUpdateManifest, RefusesAnyOtherVersion)
{
    for (const auto *version : {u"", u"1", u"1.2.3.4.5", u"1.2b", u"v1.2", u"1..2", u".1.2", u"1.2.", u"1.2 ", u" 1.2",
             u"1.2\n", u"-1.2", u"1,2", u"١.٢"}) {
        expectRefused(manifestOf(QString::fromUtf16(version)));
    }
    expectRefused(manifestOf(QString(QStringLiteral("1.2") + QChar(u'\0'))));
}

TEST(QuireUpdateManifest, RefusesABuildBelowOne)
{
    expectAccepted(manifestOf(QStringLiteral("1.2"), 1));
    expectRefused(manifestOf(QStringLiteral("1.2"), 0));
    expectRefused(manifestOf(QStringLiteral("1.2"), -5));
}

TEST(QuireUpdateManifest, AcceptsAPageOfTheHostBelowItsPath)
{
    expectAccepted(leadingTo(QStringLiteral("https://quire.example/quire")));
    expectAccepted(leadingTo(QStringLiteral("https://quire.example/quire/a?b#c")));
    expectAccepted(leadingTo(QStringLiteral("https://quire.example/quirelike")));
}

TEST(QuireUpdateManifest, RefusesAPageThatIsNotEncrypted)
{
    expectRefused(leadingTo(QStringLiteral("http://quire.example/quire")));
    expectRefused(leadingTo(QStringLiteral("HTTPS://quire.example/quire")));
    expectRefused(leadingTo(QStringLiteral("ftp://quire.example/quire")));
    expectRefused(leadingTo(QStringLiteral("file:///quire")));
    expectRefused(leadingTo(QStringLiteral("javascript:alert(1)")));
    expectRefused(leadingTo(QStringLiteral("https:quire.example/quire")));
}

TEST(QuireUpdateManifest, RefusesAPageOfAnotherHost)
{
    expectRefused(leadingTo(QStringLiteral("https://evil.example/quire")));
    expectRefused(leadingTo(QStringLiteral("https://quire.example.evil.example/quire")));
    expectRefused(leadingTo(QStringLiteral("https://sub.quire.example/quire")));
    expectRefused(leadingTo(QStringLiteral("https://quire.example@evil.example/quire")));
    expectRefused(leadingTo(QStringLiteral("https://evil.example/https://quire.example/quire")));
    expectRefused(leadingTo(QStringLiteral("https://Quire.example/quire")));
    expectRefused(leadingTo(QStringLiteral("https://evil.example?@quire.example/quire")));
    expectRefused(leadingTo(QStringLiteral("https://evil.example#@quire.example/quire")));
}

TEST(QuireUpdateManifest, RefusesAPageOutsideThePath)
{
    expectRefused(leadingTo(QStringLiteral("https://quire.example")));
    expectRefused(leadingTo(QStringLiteral("https://quire.example/")));
    expectRefused(leadingTo(QStringLiteral("https://quire.example/Quire")));
    expectRefused(leadingTo(QStringLiteral("https://quire.example/a/quire")));
    expectRefused(leadingTo(QStringLiteral("https://quire.example/?/quire")));
}

TEST(QuireUpdateManifest, OfAStandInMayLeadToThatStandIn)
{
    const QUrl standIn(QStringLiteral("http://127.0.0.1:8080"));

    expectAccepted(leadingTo(QStringLiteral("http://127.0.0.1:8080/quire")), standIn);
    expectAccepted(leadingTo(QStringLiteral("https://127.0.0.1/quire")), standIn);
    expectRefused(leadingTo(QStringLiteral("https://quire.example/quire")), standIn);
    expectRefused(leadingTo(QStringLiteral("ftp://127.0.0.1/quire")), standIn);
}

TEST(QuireVersions, AreComparedNumberByNumber)
{
    EXPECT_EQ(compared(u"1.10", u"1.9"), greater);
    EXPECT_EQ(compared(u"1.9", u"1.10"), less);
    EXPECT_EQ(compared(u"1.2.3.1", u"1.2.3"), greater);
    EXPECT_EQ(compared(u"1.2.3", u"1.2.3.0"), equal);
    EXPECT_EQ(compared(u"2", u"1.99.99.99.99"), greater);
    EXPECT_EQ(compared(u"1.0.0.0.0.1", u"1"), greater);
    EXPECT_EQ(compared(u"01.002", u"1.2"), equal);
}

TEST(QuireVersions, LeaveEmptyPiecesOut)
{
    EXPECT_EQ(compared(u"1..2", u"1.2"), equal);
    EXPECT_EQ(compared(u".1.2.", u"1.2"), equal);
    EXPECT_EQ(compared(u"", u"0.0"), equal);
    EXPECT_EQ(compared(u"...", u""), equal);
}

TEST(QuireVersions, CountAPieceThatIsNoNumberAsZero)
{
    EXPECT_EQ(compared(u"1.2beta", u"1.0"), equal);
    EXPECT_EQ(compared(u"1.2beta.5", u"1.0.4"), greater); // the comparison goes on
    EXPECT_EQ(compared(u"1.99999999999999999999", u"1.1"), less);
    EXPECT_EQ(compared(u"1.9223372036854775807", u"1.9223372036854775806"), greater);
}
