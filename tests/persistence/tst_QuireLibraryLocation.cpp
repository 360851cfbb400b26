#include "persistence/QuireLibraryLocation.h"

#include "files/DurableFile.h"
#include "files/FileError.h"
#include "persistence/AppDirectories.h"
#include "persistence/database/DatabaseError.h"
#include "testing/OwnDataDirectory.h"
#include "testing/ThrownFailure.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;

namespace {

class QuireLibraryLocationTest : public ::testing::Test
{
protected:
    void setRecord(const QByteArray &bytes)
    {
        DurableFile::createFolder(AppDirectories::supportDirectory());
        DurableFile::write(QuireLibraryLocation::recordURL(), bytes);
    }

    static QByteArray record()
    {
        QFile file(QuireLibraryLocation::recordURL());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static QString configured() { return QuireLibraryLocation::configuredDirectory(); }

    const OwnDataDirectory data;
    const QString defaultFolder = AppDirectories::supportDirectory();
};

const DatabaseError notAbsolute(
    DatabaseError::Kind::InvalidLibraryLocation, QStringLiteral("Choose an absolute folder for the Quire library."));

} // namespace

TEST_F(QuireLibraryLocationTest, TheRecordLiesInTheDefaultFolderAndTheLegacyFolderBesideIt)
{
    EXPECT_EQ(QuireLibraryLocation::recordURL(), defaultFolder + QStringLiteral("/Library Location.json"));
    EXPECT_EQ(AppDirectories::legacyBooksSupportDirectory(), data.file(QStringLiteral("Books")));
}

TEST_F(QuireLibraryLocationTest, WithoutARecordTheDefaultFolderIsUsedAndNothingIsWritten)
{
    EXPECT_EQ(configured(), defaultFolder);
    EXPECT_FALSE(QFile::exists(defaultFolder));
}

TEST_F(QuireLibraryLocationTest, ARecordedFolderIsUsedWhetherOrNotItExists)
{
    setRecord(R"({"path":"/nowhere/Reading"})");
    EXPECT_EQ(configured(), QStringLiteral("/nowhere/Reading"));
    setRecord("{\"further\": [1], \"path\": \"\\/nowhere\\/Reading\\/\"}\n");
    EXPECT_EQ(configured(), QStringLiteral("/nowhere/Reading"));
    setRecord(R"({"path":"/"})");
    EXPECT_EQ(configured(), QStringLiteral("/"));
}

TEST_F(QuireLibraryLocationTest, ALeadingTildeIsTheHomeFolder)
{
    setRecord(R"({"path":"~/Reading"})");
    EXPECT_EQ(configured(), QDir::homePath() + QStringLiteral("/Reading"));
    setRecord(R"({"path":"~"})");
    EXPECT_EQ(configured(), QDir::homePath());
}

TEST_F(QuireLibraryLocationTest, ARecordThatNamesNoAbsoluteFolderMeansTheDefaultOneAndStaysAsItIs)
{
    const QByteArray unusable[]
        = {"", "{", "[]", "null", "\"/a\"", "not json", R"({"path":"Reading"})", R"({"path":"./a"})", R"({"path":""})",
            R"({"path":" /a"})", R"({"path":"~nobody/a"})", R"({"path":null})", R"({"path":["/a"]})", R"({"path":7})",
            R"({"Path":"/a"})", R"({"path":"/a\u0000b"})", R"({"path":"/a\ud800"})", R"({"path":"/a"}x)",
            R"({"path":"/a)", "{\"path\":\"/a\xff\"}", QByteArray(3'000'000, ' '), QByteArray("[").repeated(100'000)};
    for (const QByteArray &bytes : unusable) {
        setRecord(bytes);
        EXPECT_EQ(configured(), defaultFolder) << bytes.left(40).constData();
        EXPECT_EQ(record(), bytes);
    }
}

TEST_F(QuireLibraryLocationTest, AFolderOrAPipeInThePlaceOfTheRecordMeansTheDefaultFolder)
{
    QDir().mkpath(QuireLibraryLocation::recordURL());
    EXPECT_EQ(configured(), defaultFolder);
    QDir().rmdir(QuireLibraryLocation::recordURL());
    ASSERT_EQ(::mkfifo(QFile::encodeName(QuireLibraryLocation::recordURL()).constData(), 0600), 0);
    EXPECT_EQ(configured(), defaultFolder); // and does not wait for a writer
}

TEST_F(QuireLibraryLocationTest, ASavedFolderIsTheOneFoundWhateverItsLetters)
{
    const QString folders[] = {QStringLiteral("/Reading"), QStringLiteral("/with blanks/at the end "),
        QStringLiteral("/\"quoted\" and 'quoted'"), QStringLiteral("/100%/%20/%s"), QStringLiteral("/a\\b\nc"),
        QStringLiteral("/読書/Книги/كتب/𝔅"), QStringLiteral("/~/tilde"), QStringLiteral("/e\u0301 and \u00e9")};
    for (const QString &folder : folders) {
        QuireLibraryLocation::save(folder, QuireLibraryLocation::recordURL());
        EXPECT_EQ(configured(), folder) << qPrintable(folder);
    }
}

TEST_F(QuireLibraryLocationTest, TheRecordIsAnObjectWithTheStandardizedPathAlone)
{
    QuireLibraryLocation::save(QStringLiteral("/a/./b//../Reading/"), QuireLibraryLocation::recordURL());
    const QJsonObject expected{{QStringLiteral("path"), QStringLiteral("/a/Reading")}};
    EXPECT_EQ(QJsonDocument::fromJson(record()).object(), expected);
    EXPECT_EQ(QDir(defaultFolder).entryList(QDir::Files | QDir::Hidden),
        QStringList{QStringLiteral("Library Location.json")});
}

TEST_F(QuireLibraryLocationTest, AFolderThatIsNotAbsoluteIsRefusedAndTheRecordStays)
{
    setRecord(R"({"path":"/a"})");
    for (const QString &folder : {QString(), QStringLiteral("Reading"), QStringLiteral("~/Reading"),
             QStringLiteral("./a"), QStringLiteral("file:///a"), QString(QStringLiteral("/a") + QChar::Null)}) {
        EXPECT_EQ(
            thrownBy<DatabaseError>([&] { QuireLibraryLocation::save(folder, QuireLibraryLocation::recordURL()); }),
            notAbsolute);
    }
    EXPECT_EQ(record(), R"({"path":"/a"})");
}

TEST_F(QuireLibraryLocationTest, ARecordThatCannotBeWrittenIsAFileFailure)
{
    QDir().mkpath(QuireLibraryLocation::recordURL());
    EXPECT_EQ(thrownBy<FileError>([&] {
        QuireLibraryLocation::save(QStringLiteral("/a"), QuireLibraryLocation::recordURL());
    })->path(),
        QuireLibraryLocation::recordURL());
}
