// Damaged backups: flipped bits, cut ends, zeroed, swapped and strange pages,
// the file or the manifest of another library. Whoever asks whether a backup
// still is what its manifest says is told no; and a copy that was damaged before
// it was verified is never called a backup unless what it holds is, row by row,
// what the library holds.

#include "faults/Torture.h"
#include "persistence/BackupVerification.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/LiveLibrary.h"
#include "persistence/QuireCredentialStore.h"
#include "reliability/BackupContents.h"
#include "reliability/FinishedBackup.h"
#include "reliability/QuireBackupManifest.h"
#include "testing/Await.h"
#include "testing/TestLibrary.h"

#include <QCryptographicHash>
#include <QFile>

#include <gtest/gtest.h>

#include <functional>

using namespace quire;
using namespace quire::testing;

namespace {

constexpr qsizetype pageBytes = 4'096;

// A library with covers, tags and notes, so that its file has pages of every kind.
void fill(TestLibrary &library, int titles, char letter)
{
    library.execute("UPDATE library_metadata SET lineage_token = lineage_token"); // the file is there
    SQLiteDatabase database(library.databasePath());
    database.executeScript("BEGIN");
    for (int i = 1; i <= titles; ++i) {
        database.execute(
            "INSERT INTO goodreads_books (goodreads_id, title, author, shelf, description, notes, cover_data)"
            " VALUES (?, ?, ?, 'read', ?, ?, ?)",
            {QString::number(i), QStringLiteral("Title %1").arg(i),
                QStringLiteral("Author %1").arg(QLatin1Char(letter)), QString(300, QLatin1Char(letter)),
                QStringLiteral("A note"), QByteArray(i % 4 == 0 ? 9'000 : 0, letter)});
        database.execute("INSERT INTO book_tags (book_id, tag) VALUES (?, ?)", {i, QString(20, QLatin1Char(letter))});
        database.execute("INSERT INTO audible_books (asin, title) VALUES (?, 'Heard')", {QStringLiteral("B%1").arg(i)});
    }
    database.executeScript("COMMIT");
}

QByteArray read(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

// The bytes of a good file with one kind of damage. Always other bytes than before.
class Damage
{
public:
    Damage(QByteArray good, QByteArray ofAnotherLibrary)
        : m_good(std::move(good))
        , m_other(std::move(ofAnotherLibrary))
    {
    }

    struct Result
    {
        QString what;
        QByteArray bytes;
    };

    Result random(Torture &torture) const
    {
        for (;;) {
            Result result = one(torture);
            if (result.bytes != m_good) { // two pages of one content may have been swapped
                return result;
            }
        }
    }

private:
    Result one(Torture &torture) const
    {
        QByteArray bytes = m_good;
        const int size = int(bytes.size());
        const int pages = int(size / pageBytes);
        const qsizetype page = torture.below(pages) * pageBytes;
        switch (torture.below(8)) {
        case 0:
        case 1: {
            const int bit = torture.below(size * 8);
            flip(bytes, bit);
            return {QStringLiteral("bit %1 flipped").arg(bit), bytes};
        }
        case 2: {
            const int count = 2 + torture.below(30);
            for (int i = 0; i < count; ++i) {
                flip(bytes, torture.below(size * 8));
            }
            return {QStringLiteral("%1 bits flipped").arg(count), bytes};
        }
        case 3: {
            const int length = torture.below(2) == 0 ? torture.below(size) : int(torture.below(pages) * pageBytes);
            return {QStringLiteral("cut to %1 bytes").arg(length), bytes.first(length)};
        }
        case 4:
            return {QStringLiteral("page at %1 zeroed").arg(page),
                bytes.replace(page, pageBytes, QByteArray(pageBytes, '\0'))};
        case 5: {
            const qsizetype with = torture.below(pages) * pageBytes;
            bytes.replace(page, pageBytes, m_good.mid(with, pageBytes));
            bytes.replace(with, pageBytes, m_good.mid(page, pageBytes));
            return {QStringLiteral("pages at %1 and %2 swapped").arg(page).arg(with), bytes};
        }
        case 6:
            // What a torn write leaves: the beginning new, the end old, or of another file.
            return {QStringLiteral("page at %1 of another library").arg(page),
                bytes.replace(page, pageBytes, m_other.mid(page % m_other.size(), pageBytes))};
        default:
            if (torture.below(2) == 0) {
                return {QStringLiteral("another library's file"), m_other};
            }
            return {QStringLiteral("bytes behind the end"), bytes + QByteArray(1 + torture.below(int(pageBytes)), 'x')};
        }
    }

    static void flip(QByteArray &bytes, int bit) { bytes[bit / 8] = char(bytes[bit / 8] ^ (1 << (bit % 8))); }

    QByteArray m_good;
    QByteArray m_other;
};

class DamagedBackups : public ::testing::Test
{
protected:
    DamagedBackups()
    {
        fill(library, 40, 'a');
        fill(other, 25, 'b');
        backup = await(library.store().backUpDatabase(std::nullopt));
        manifest = *QuireBackupManifest::read(backup + QStringLiteral(".manifest.json"));
        const QString otherBackup = await(other.store().backUpDatabase(std::nullopt));
        otherManifest = *QuireBackupManifest::read(otherBackup + QStringLiteral(".manifest.json"));
        good = read(backup);
        otherBytes = read(otherBackup);
    }

    TestLibrary library;
    TestLibrary other;
    QString backup;
    QuireBackupManifest manifest;
    QuireBackupManifest otherManifest;
    QByteArray good;
    QByteArray otherBytes;
};

using Question = std::function<bool(const QString &backup)>;

bool isGood(const QString &backup)
{
    return FinishedBackup::condition(backup) == FinishedBackup::Condition::Good;
}

// The fault that `isTrusted` shows for one damage; nothing when it refuses it.
std::optional<QString> trusted(const Damage &damage, Torture &torture, const QString &backup, const Question &isTrusted)
{
    const Damage::Result damaged = damage.random(torture);
    put(backup, damaged.bytes);
    return isTrusted(backup) ? std::optional(damaged.what) : std::nullopt;
}

} // namespace

TEST_F(DamagedBackups, AreNeverWhatTheirManifestSays)
{
    Torture torture("R06", "damaged backups beside their manifest");
    const Damage damage(good, otherBytes);
    ASSERT_TRUE(isGood(backup));
    for (int round = Torture::scaled(1'000); round > 0; --round) {
        torture.addRounds();
        if (const auto fault = trusted(damage, torture, backup, &isGood)) {
            torture.addFinding(*fault);
        }
    }
    put(backup, good);
    EXPECT_TRUE(isGood(backup)); // it was the damage
}

// What SQLite's own check of a file is worth against such damage.
TEST_F(DamagedBackups, PassACheckThatKnowsNoFingerprint)
{
    Torture torture("R06", "control: a check without a fingerprint");
    const Damage damage(good, otherBytes);
    const auto passesItsOwnCheck = [](const QString &path) {
        try {
            return SQLiteDatabase(path, true).integrityCheck();
        } catch (const DatabaseError &) {
            return false;
        }
    };
    bool isSeen = false;
    for (int round = 0; round < 1'000 && !isSeen; ++round) {
        isSeen = trusted(damage, torture, backup, passesItsOwnCheck).has_value();
    }
    EXPECT_TRUE(isSeen);
}

TEST_F(DamagedBackups, WithADamagedOrStrangeManifestAreTrustedOnlyWhenItStillTellsTheTruth)
{
    Torture torture("R06", "damaged manifests");
    const QString path = backup + QStringLiteral(".manifest.json");
    otherManifest.write(path);
    EXPECT_FALSE(isGood(backup));

    const Damage damage(manifest.encoded(), otherManifest.encoded());
    const QByteArray goodText = manifest.encoded();
    for (int round = Torture::scaled(1'000); round > 0; --round) {
        torture.addRounds();
        QByteArray text = goodText;
        for (int i = torture.below(3); i >= 0; --i) {
            const int bit = torture.below(int(text.size()) * 8);
            text[bit / 8] = char(text[bit / 8] ^ (1 << (bit % 8)));
        }
        if (torture.below(4) == 0) {
            text.truncate(torture.below(int(text.size())));
        }
        put(path, text);
        auto read = QuireBackupManifest::read(path);
        if (read) { // of these nothing depends
            read->createdAt = manifest.createdAt;
            read->integrityCheck = manifest.integrityCheck;
        }
        if (isGood(backup) && read != manifest) {
            torture.addFinding(QString::fromLatin1(text.toHex()));
        }
    }
}

TEST_F(DamagedBackups, AreNoBackupsWhenTheDamageCameBeforeTheVerification)
{
    Torture torture("R06", "copies damaged before their verification");
    library.close();
    SQLiteDatabase live(library.databasePath());
    const QuireCredentialStore credentials(library.file(QStringLiteral("Credentials.plist")));
    const LiveLibrary liveLibrary{live, credentials, library.folder(), library.clock()};
    const QString copy = library.file(QStringLiteral("copy.db"));
    SQLiteDatabase::backUp(library.databasePath(), copy);
    const Damage damage(read(copy), otherBytes);
    int harmless = 0;
    for (int round = Torture::scaled(300); round > 0; --round) {
        torture.addRounds();
        const Damage::Result damaged = damage.random(torture);
        put(copy, damaged.bytes);
        try {
            const auto described = BackupVerification::verify(copy, liveLibrary);
            // In bytes that no row lies in. It is a good copy all the same.
            ++harmless;
            SQLiteDatabase reopened(copy);
            if (!reopened.integrityCheck() || !BackupContents::areSame(live, reopened) || described.bookCount != 40
                || !isGood(copy)) {
                torture.addFinding(damaged.what);
            }
        } catch (const DatabaseError &error) {
            if (error.kind() != DatabaseError::Kind::Backup) {
                torture.addFinding(damaged.what + QStringLiteral(": ") + error.description());
            }
        }
        for (const char *suffix : {"-wal", "-shm", "-journal", ".manifest.json"}) {
            QFile::remove(copy + QLatin1String(suffix));
        }
    }
    RecordProperty("harmless", harmless);
    std::printf("harmless damage: %d\n", harmless);
}
