#include "persistence/QuireCredentialStore.h"

#include "files/FileError.h"
#include "testing/TestFiles.h"
#include "testing/ThrownFailure.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;
using Secrets = QMap<QString, QString>;

namespace {

const QString feedKey = QStringLiteral("goodreadsRssKey");
const QString token = QStringLiteral("netlifyToken");

class QuireCredentialStoreTest : public ::testing::Test
{
protected:
    void fill(const QByteArray &bytes) const { putFile(m_store.url(), bytes); }

    mode_t mode() const
    {
        struct stat status
        {
        };
        EXPECT_EQ(::stat(QFile::encodeName(m_store.url()).constData(), &status), 0);
        return status.st_mode & 07777;
    }

    QTemporaryDir m_folder;
    QuireCredentialStore m_store{m_folder.filePath(QStringLiteral("Credentials.plist"))};
};

} // namespace

TEST_F(QuireCredentialStoreTest, AMissingFileIsEmpty)
{
    EXPECT_EQ(m_store.load(), Secrets());
}

TEST_F(QuireCredentialStoreTest, KeepsTrimmedValuesInACborMapOfTexts)
{
    m_store.set(QStringLiteral(" \n a key \t"), feedKey);
    m_store.set(QStringLiteral("a token"), token);
    EXPECT_EQ(m_store.load(), (Secrets{{feedKey, QStringLiteral("a key")}, {token, QStringLiteral("a token")}}));
    QFile file(m_store.url());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(QCborValue::fromCbor(file.readAll()).toMap(),
        (QCborMap{{feedKey, QStringLiteral("a key")}, {token, QStringLiteral("a token")}}));
}

TEST_F(QuireCredentialStoreTest, ABlankValueRemovesItsKeyAndLeavesTheOther)
{
    m_store.set(QStringLiteral("a key"), feedKey);
    m_store.set(QStringLiteral("a token"), token);
    m_store.set(QStringLiteral(" \n"), feedKey);
    EXPECT_EQ(m_store.load(), (Secrets{{token, QStringLiteral("a token")}}));
}

TEST_F(QuireCredentialStoreTest, AnEmptyValueInTheFileReadsAsAbsent)
{
    fill(QCborMap{{feedKey, QString()}, {token, QStringLiteral("a token")}}.toCborValue().toCbor());
    EXPECT_EQ(m_store.load(), (Secrets{{token, QStringLiteral("a token")}}));
}

TEST_F(QuireCredentialStoreTest, ADamagedFileIsEmptyAndIsReplacedByTheNextValue)
{
    const QByteArray whole = QCborMap{{token, QStringLiteral("a token")}}.toCborValue().toCbor();
    for (const QByteArray &damaged :
        {QByteArray("garbage"), QByteArray(), whole.chopped(3), QCborMap{{token, 7}}.toCborValue().toCbor(),
            QCborArray{1}.toCborValue().toCbor(), QByteArray(2'000'000, '\x9f'), QByteArray(100'000, '\x9f')}) {
        fill(damaged);
        EXPECT_EQ(m_store.load(), Secrets());
    }
    m_store.set(QStringLiteral("a key"), feedKey);
    EXPECT_EQ(m_store.load(), (Secrets{{feedKey, QStringLiteral("a key")}}));
}

TEST_F(QuireCredentialStoreTest, TheFileIsTheReadersAloneWhateverItWas)
{
    m_store.set(QStringLiteral("a key"), feedKey);
    EXPECT_EQ(mode(), mode_t(0600));
    ::chmod(QFile::encodeName(m_store.url()).constData(), 0666);
    m_store.set(QStringLiteral("another"), feedKey);
    EXPECT_EQ(mode(), mode_t(0600));
}

TEST_F(QuireCredentialStoreTest, TheFolderIsCreatedWithItsParents)
{
    const QuireCredentialStore store(m_folder.filePath(QStringLiteral("a/b/Credentials.plist")));
    store.set(QStringLiteral("a key"), feedKey);
    EXPECT_EQ(store.load(), (Secrets{{feedKey, QStringLiteral("a key")}}));
}

TEST_F(QuireCredentialStoreTest, AFailedWriteIsPassedOn)
{
    QDir().mkpath(m_store.url());
    EXPECT_EQ(thrownBy<FileError>([&] { m_store.set(QStringLiteral("a key"), feedKey); })->path(), m_store.url());
}

TEST_F(QuireCredentialStoreTest, MigrationTakesOnlyProtectedKeysThatAreNotBlank)
{
    const QStringList taken = m_store.migrate({{feedKey, QStringLiteral("  ")}, {token, QStringLiteral(" a token ")},
        {QStringLiteral("goodreadsUserID"), QStringLiteral("42")}});
    EXPECT_EQ(taken, QStringList{token});
    EXPECT_EQ(m_store.load(), (Secrets{{token, QStringLiteral("a token")}}));
}

TEST_F(QuireCredentialStoreTest, MigrationLeavesAValueOfTheFileAndFreesItsRow)
{
    m_store.set(QStringLiteral("of the file"), token);
    EXPECT_EQ(m_store.migrate({{token, QStringLiteral("of the table")}}), QStringList{token});
    EXPECT_EQ(m_store.load(), (Secrets{{token, QStringLiteral("of the file")}}));
}

TEST_F(QuireCredentialStoreTest, MigrationThatCannotWriteFreesNoRow)
{
    QDir().mkpath(m_store.url());
    EXPECT_TRUE(thrownBy<FileError>([&] { m_store.migrate({{token, QStringLiteral("a token")}}); }));
}
