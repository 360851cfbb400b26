#include "reliability/QuireLibraryLeaseOwner.h"

#include "files/Descriptor.h"
#include "testing/TestFiles.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/stat.h>

namespace quire {

namespace {

using namespace std::chrono_literals;

constexpr Instant epoch = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);

const QByteArray whole = R"({"createdAt":812345678.25,"hostID":"platform:ab","hostName":"Shelf","processID":42,)"
                         R"("token":"67C8770B-44F1-410A-AB9A-F9B5446F13EE"})";

QuireLibraryLeaseOwner owner()
{
    return {QUuid::fromString(u"67c8770b-44f1-410a-ab9a-f9b5446f13ee"), 42, QStringLiteral("Shelf"),
        QStringLiteral("platform:ab"), epoch + 812'345'678'250ms};
}

// `whole` with one piece of text replaced, which must be there.
QByteArray with(const QByteArray &piece, const QByteArray &replacement)
{
    EXPECT_TRUE(whole.contains(piece)) << piece.constData();
    return QByteArray(whole).replace(piece, replacement);
}

class QuireLibraryLeaseOwnerFile : public ::testing::Test
{
protected:
    void put(const QByteArray &content) const { testing::putFile(path, content); }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("Owner.json"));
};

} // namespace

TEST(QuireLibraryLeaseOwner, ItIsOneObjectWithTheMomentInSecondsSince2001)
{
    EXPECT_EQ(owner().encoded(), whole);
}

TEST(QuireLibraryLeaseOwner, AnAbsentHostIDIsLeftOut)
{
    QuireLibraryLeaseOwner older = owner();
    older.hostID.reset();
    EXPECT_FALSE(older.encoded().contains("hostID"));
    EXPECT_EQ(QuireLibraryLeaseOwner::decoded(older.encoded()), older);
}

TEST(QuireLibraryLeaseOwner, ARecordComesBackAsItWasWritten)
{
    EXPECT_EQ(QuireLibraryLeaseOwner::decoded(owner().encoded()), owner());

    QuireLibraryLeaseOwner odd = owner();
    odd.hostName = QStringLiteral("\"书房\"\\\n%1\U0001F4DA");
    odd.processID = std::numeric_limits<qint32>::min();
    odd.createdAt = epoch - 1ms;
    EXPECT_EQ(QuireLibraryLeaseOwner::decoded(odd.encoded()), odd);
}

TEST(QuireLibraryLeaseOwner, WhatOtherEncodersWriteIsRead)
{
    QuireLibraryLeaseOwner older = owner();
    older.hostID.reset();
    EXPECT_EQ(QuireLibraryLeaseOwner::decoded(with("67C8770B-44F1-410A-AB9A", "67c8770b-44f1-410a-ab9a")), owner());
    EXPECT_EQ(QuireLibraryLeaseOwner::decoded(with(":42,", " : 42.0 ,\n")), owner());
    EXPECT_EQ(QuireLibraryLeaseOwner::decoded(with("812345678.25", "8.1234567825e8")), owner());
    EXPECT_EQ(QuireLibraryLeaseOwner::decoded(with("{\"created", R"({"more":[1,{}],"created)")), owner());
    EXPECT_EQ(QuireLibraryLeaseOwner::decoded(with("\"platform:ab\"", "null")), older);
}

TEST(QuireLibraryLeaseOwner, ARecordCutAnywhereIsNone)
{
    for (qsizetype length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(QuireLibraryLeaseOwner::decoded(whole.first(length)), std::nullopt) << length;
    }
    EXPECT_NE(QuireLibraryLeaseOwner::decoded(whole), std::nullopt);
}

TEST(QuireLibraryLeaseOwner, AKeyThatIsMissingOrOfAnotherTypeSpoilsIt)
{
    const QByteArray token = R"("67C8770B-44F1-410A-AB9A-F9B5446F13EE")";
    const QList<QByteArray> spoilt{
        with("\"token\"", "\"Token\""),
        with("\"processID\"", "\"pid\""),
        with("\"hostName\"", "\"host\""),
        with("\"createdAt\"", "\"created\""),
        with(token, "null"),
        with(token, "7"),
        with(token, R"("")"),
        with(token, R"("{67C8770B-44F1-410A-AB9A-F9B5446F13EE}")"),
        with(token, R"("67C8770B-44F1-410A-AB9A-F9B5446F13EEEE")"),
        with(token, R"("67C8770B-44F1-410A-AB9A-F9B5446F13E")"),
        with(token, R"("67C8770B-44F1-410A-AB9A-F9B5446F13EG")"),
        with(token, R"("67C8770B44F1-410A-AB9A-F9B5446F13EE-0")"),
        with("42", "42.5"),
        with("42", "2147483648"),
        with("42", "-2147483649"),
        with("42", "1e300"),
        with("42", "\"42\""),
        with("42", "true"),
        with("42", "null"),
        with("\"Shelf\"", "null"),
        with("\"Shelf\"", "5"),
        with("\"Shelf\"", "[\"Shelf\"]"),
        with("\"platform:ab\"", "5"),
        with("\"platform:ab\"", "false"),
        with("812345678.25", "\"812345678.25\""),
        with("812345678.25", "\"2026-11-21T12:00:00Z\""),
        with("812345678.25", "null"),
        with("812345678.25", "NaN"),
        with("812345678.25", "1e999"),
        "[" + whole + "]",
        whole + "}",
        whole + whole,
        QByteArray(100'000, '['),
        QByteArray("\xff\xfe\0{", 4),
        QByteArray(500, '\0'),
    };
    for (const QByteArray &bytes : spoilt) {
        EXPECT_EQ(QuireLibraryLeaseOwner::decoded(bytes), std::nullopt) << bytes.left(200).constData();
    }
}

TEST(QuireLibraryLeaseOwner, AMomentBeyondAllCalendarsIsTheNearestWithin)
{
    const auto late = QuireLibraryLeaseOwner::decoded(with("812345678.25", "1e300"));
    const auto early = QuireLibraryLeaseOwner::decoded(with("812345678.25", "-1e300"));
    ASSERT_TRUE(late && early);
    EXPECT_EQ(late->createdAt, Instant(std::chrono::sys_days(std::chrono::year(9999) / 12 / 31)));
    EXPECT_EQ(early->createdAt, distantPast);
}

TEST_F(QuireLibraryLeaseOwnerFile, AWholeRecordIsRead)
{
    put(whole);
    EXPECT_EQ(QuireLibraryLeaseOwner::read(path), owner());
}

TEST_F(QuireLibraryLeaseOwnerFile, NoFileAFolderAndACircleOfLinksAreNoRecord)
{
    EXPECT_EQ(QuireLibraryLeaseOwner::read(path), std::nullopt);
    ASSERT_TRUE(QFile::link(path, path));
    EXPECT_EQ(QuireLibraryLeaseOwner::read(path), std::nullopt);
    EXPECT_EQ(QuireLibraryLeaseOwner::read(folder.path()), std::nullopt);
}

TEST_F(QuireLibraryLeaseOwnerFile, APipeThatNobodyWritesIntoHoldsNobodyUp)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EXPECT_EQ(QuireLibraryLeaseOwner::read(path), std::nullopt);
}

TEST_F(QuireLibraryLeaseOwnerFile, WhatComesOutOfAPipeIsNoRecord)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    const Descriptor pipe(::open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(::write(pipe.number(), whole.constData(), std::size_t(whole.size())), whole.size());
    EXPECT_EQ(QuireLibraryLeaseOwner::read(path), std::nullopt);
}

TEST_F(QuireLibraryLeaseOwnerFile, ARecordLargerThanAnyCanBeIsNotRead)
{
    const QByteArray blanks(QuireLibraryLeaseOwner::maximumSize - whole.size(), ' ');
    put(whole + blanks);
    EXPECT_EQ(QuireLibraryLeaseOwner::read(path), owner());
    put(whole + blanks + ' ');
    EXPECT_EQ(QuireLibraryLeaseOwner::read(path), std::nullopt);
}

} // namespace quire
