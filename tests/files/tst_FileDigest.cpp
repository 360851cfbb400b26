#include "files/FileDigest.h"

#include "files/FileError.h"
#include "testing/ThrownFailure.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>

using namespace quire;
using namespace quire::testing;

namespace {

class FileDigestTest : public ::testing::Test
{
protected:
    QString put(const QByteArray &bytes)
    {
        QFile file(m_folder.filePath(QStringLiteral("a file")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return file.fileName();
    }

    QTemporaryDir m_folder;
};

} // namespace

TEST_F(FileDigestTest, IsTheWellKnownOneOfNothingAndOfThreeLetters)
{
    EXPECT_EQ(FileDigest::sha256(put({})),
        QStringLiteral("e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"));
    EXPECT_EQ(FileDigest::sha256(put("abc")),
        QStringLiteral("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"));
}

TEST_F(FileDigestTest, IsThatOfTheWholeFileHoweverManyPiecesItIsReadIn)
{
    for (const qsizetype length : {1, 1 << 20, (1 << 20) + 1, 3'000'001}) {
        QByteArray bytes(length, 'x');
        bytes.back() = 'y';
        EXPECT_EQ(FileDigest::sha256(put(bytes)),
            QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex()))
            << length;
    }
}

TEST_F(FileDigestTest, FailsWithTypeWithoutAFile)
{
    const QString missing = m_folder.filePath(QStringLiteral("missing"));
    const auto failure = thrownBy<FileError>([&] { FileDigest::sha256(missing); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), missing);
    EXPECT_EQ(failure->code(), ENOENT);

    const auto ofFolder = thrownBy<FileError>([&] { FileDigest::sha256(m_folder.path()); });
    ASSERT_TRUE(ofFolder);
    EXPECT_EQ(ofFolder->code(), EISDIR);
}
