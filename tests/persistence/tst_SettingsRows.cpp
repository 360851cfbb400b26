#include "persistence/database/DatabaseError.h"
#include "persistence/QuireCredentialStore.h"
#include "testing/Await.h"
#include "testing/ImportRecords.h"
#include "testing/TestLibrary.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;

namespace {

QString text(const char *value)
{
    return QString::fromUtf8(value);
}

const QString token = QStringLiteral("netlifyToken");
const QString feedKey = QStringLiteral("goodreadsRssKey");
const QString tab = QStringLiteral("selectedTab");

SQLiteValue row(const TestLibrary &library, const QString &key)
{
    return library.scalar("SELECT value FROM settings WHERE key = ?", {key});
}

qint64 rowCount(const TestLibrary &library)
{
    return library.scalar("SELECT COUNT(*) FROM settings").intValue().value();
}

void setRow(TestLibrary &library, const QString &key, const SQLiteValue &value)
{
    library.execute("INSERT OR REPLACE INTO settings (key, value) VALUES (?, ?)", {key, value});
}

} // namespace

TEST(SettingsRows, ASettingIsWrittenReadAndReplaced)
{
    TestLibrary library;
    EXPECT_EQ(await(library.store().setting(tab)), std::nullopt);
    await(library.store().setSetting(tab, text("books")));
    EXPECT_EQ(await(library.store().setting(tab)), text("books"));
    await(library.store().setSetting(tab, text("audiobooks ")));
    EXPECT_EQ(await(library.store().setting(tab)), text("audiobooks "));
    EXPECT_EQ(rowCount(library), 1);
}

TEST(SettingsRows, AnEmptyValueIsStoredAndNotAbsent)
{
    TestLibrary library;
    await(library.store().setSetting(tab, QString()));
    EXPECT_EQ(await(library.store().setting(tab)), QString());
    EXPECT_EQ(row(library, tab), text(""));
}

TEST(SettingsRows, AKeyIsTakenToTheLetter)
{
    TestLibrary library;
    await(library.store().setSetting(text("netlifytoken"), text("no secret")));
    EXPECT_EQ(row(library, text("netlifytoken")), text("no secret"));
    EXPECT_EQ(await(library.store().setting(token)), std::nullopt);
}

TEST(SettingsRows, AProtectedKeyNeverEntersTheTable)
{
    TestLibrary library;
    for (const QString &key : {token, feedKey}) {
        await(library.store().setSetting(key, text("  secret\n")));
        EXPECT_EQ(await(library.store().setting(key)), text("secret"));
    }
    EXPECT_EQ(rowCount(library), 0);
}

TEST(SettingsRows, ABlankSecretRemovesItAndTheOtherStays)
{
    TestLibrary library;
    await(library.store().setSettings({{token, text("one")}, {feedKey, text("two")}}));
    await(library.store().setSetting(token, text("  ")));
    EXPECT_EQ(await(library.store().setting(token)), std::nullopt);
    EXPECT_EQ(await(library.store().setting(feedKey)), text("two"));
}

TEST(SettingsRows, AnOldRowOfAProtectedKeyIsNeverReadAndGoesWithTheNextWrite)
{
    TestLibrary library;
    setRow(library, token, text("old"));
    EXPECT_EQ(await(library.store().setting(token)), std::nullopt);
    await(library.store().setSetting(token, text("new")));
    EXPECT_EQ(await(library.store().setting(token)), text("new"));
    EXPECT_EQ(rowCount(library), 0);
}

TEST(SettingsRows, TheSecretsOfTheFileLieOverTheRowsAndNothingElseOfItDoes)
{
    TestLibrary library;
    setRow(library, token, text("old"));
    setRow(library, tab, text("books"));
    const QuireCredentialStore file(library.file(text("Credentials.plist")));
    file.set(text("new"), token);
    file.set(text("from the file"), tab);
    EXPECT_EQ(await(library.store().settings()), (SettingsMap{{token, text("new")}, {tab, text("books")}}));
}

TEST(SettingsRows, ACredentialFileThatIsGarbageReadsAsNone)
{
    TestLibrary library;
    await(library.store().setSetting(tab, text("books")));
    await(library.store().setSetting(token, text("secret")));
    QFile file(library.file(text("Credentials.plist")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("garbage");
    file.close();
    EXPECT_EQ(await(library.store().setting(token)), std::nullopt);
    EXPECT_EQ(await(library.store().settings()), (SettingsMap{{tab, text("books")}}));
}

TEST(SettingsRows, AFailureAtTheCredentialFileLeavesTheTableAsItWas)
{
    TestLibrary library;
    setRow(library, token, text("old"));
    // A folder with something in it cannot be replaced by a file.
    ASSERT_TRUE(QDir().mkpath(library.file(text("Credentials.plist/occupied"))));
    EXPECT_THROW(await(library.store().setSetting(token, text("new"))), Failure);
    EXPECT_EQ(row(library, token), text("old"));
    EXPECT_THROW(
        await(library.store().setSettings({{tab, text("books")}, {token, text("new")}, {text("a"), text("b")}})),
        Failure);
    EXPECT_EQ(row(library, token), text("old"));
    EXPECT_EQ(rowCount(library), 1);
}

TEST(SettingsRows, ManySettingsAreWrittenInAscendingOrderOfKeyAndTogether)
{
    TestLibrary library;
    library.executeScript(
        "CREATE TABLE written (key TEXT);"
        "CREATE TRIGGER note AFTER INSERT ON settings BEGIN INSERT INTO written VALUES (NEW.key); END");
    await(library.store().setSettings(
        {{text("b"), text("2")}, {text("c"), text("3")}, {text("B"), text("0")}, {text("a"), text("1")}}));
    const auto order = library.query("SELECT key FROM written ORDER BY rowid");
    QStringList keys;
    for (const SQLiteRow &one : order) {
        keys.append(one.string(text("key"), {}));
    }
    EXPECT_THAT(keys, ::testing::ElementsAre(text("B"), text("a"), text("b"), text("c")));

    failOn(library, text("INSERT"), text("settings"), text("NEW.key = 'c'"));
    const auto before = everything(library);
    EXPECT_THROW(await(library.store().setSettings({{text("a"), text("9")}, {text("c"), text("9")}})), DatabaseError);
    EXPECT_EQ(everything(library), before);
}

TEST(SettingsRows, AnEmptyMapWritesNothing)
{
    TestLibrary library;
    const auto before = everything(library);
    await(library.store().setSettings({}));
    EXPECT_EQ(everything(library), before);
}

TEST(SettingsRows, SettingsAndSecretsDoNotCountAsChangesOfTheLibrary)
{
    TestLibrary library;
    await(library.store().setSettings({{tab, text("books")}, {token, text("secret")}}));
    EXPECT_EQ(library.scalar("SELECT generation FROM library_metadata").intValue(), 0);
}
