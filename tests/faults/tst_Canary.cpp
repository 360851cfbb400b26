// Secrets are in the credential file and nowhere else: after every failure that
// can be provoked, no other file, no notice and no passing message has them.

#include "faults/Torture.h"
#include "ModelTest.h"
#include "records/Failure.h"
#include "testing/ImportRecords.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;

namespace {

const QString feedKey = QStringLiteral("canary/Feed key+7731");
const QString token = QStringLiteral("canary-Token-9904");

// The forms in which a secret could leak.
QList<QByteArray> formsOf(const QString &secret)
{
    const QByteArray plain = secret.toUtf8();
    return {plain, QUrl::toPercentEncoding(secret), QUrl::toPercentEncoding(secret).toLower(), plain.toBase64(),
        plain.toHex(), QByteArray(reinterpret_cast<const char *>(secret.utf16()), secret.size() * 2)};
}

bool holdsSecret(const QByteArray &bytes)
{
    for (const QString &secret : {feedKey, token}) {
        for (const QByteArray &form : formsOf(secret)) {
            if (bytes.contains(form)) {
                return true;
            }
        }
    }
    return false;
}

bool holdsSecret(const QString &text)
{
    return holdsSecret(text.toUtf8());
}

QStringList filesWithSecrets(const QString &folder)
{
    QStringList found;
    QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly) && holdsSecret(file.readAll())) {
            found.append(QDir(folder).relativeFilePath(file.fileName()));
        }
    }
    return found;
}

const QStringList credentialFileAlone{QStringLiteral("Credentials.plist")};

class CanaryTest : public ModelTest
{
protected:
    CanaryTest()
    {
        library.open();
        await(library.store().setSettings({{QStringLiteral("goodreadsUserId"), QStringLiteral("42")},
            {QStringLiteral("goodreadsRssKey"), feedKey}, {QStringLiteral("netlifyToken"), token}}));
        library.close();
    }

    // Syncs by hand and by schedule, against a server that answers so, and notes
    // what was said.
    void syncAgainst(const LoopbackHandler &handler)
    {
        goodreads.routeEverythingElse(handler);
        for (const bool automatic : {false, true}) {
            await(model->synchronizeGoodreads(automatic));
            said.append(model->toastMessage().value_or(QString()));
            said.append(model->notice() ? model->notice()->title + model->notice()->message : QString());
            model->setNotice(std::nullopt);
        }
        torture.addRounds();
    }

    void expectNothingLeaked()
    {
        said += logLines();
        for (const QString &text : std::as_const(said)) {
            if (holdsSecret(text)) {
                torture.addFinding(QStringLiteral("said: ") + text);
            }
        }
        const QStringList files = filesWithSecrets(library.folder());
        if (files != credentialFileAlone) {
            torture.addFinding(QStringLiteral("in files: ") + files.join(QStringLiteral(", ")));
        }
    }

    Torture torture{"R21", "canary secrets in every field"};
    QStringList said;
};

LoopbackHandler echoing(int status)
{
    return [status](const LoopbackRequest &request) {
        return LoopbackReply::withStatus(status,
            "You asked for " + request.target + " with the key " + request.queryValue(QStringLiteral("key")).toUtf8());
    };
}

} // namespace

TEST_F(CanaryTest, AServerThatRepeatsTheRequestIsNotRepeated)
{
    startModel();
    for (const int status : {400, 401, 403, 404, 500, 503}) {
        syncAgainst(echoing(status));
    }
    EXPECT_THAT(said.join(QLatin1Char('\n')).toStdString(), ::testing::HasSubstr("with the key …"));
    expectNothingLeaked();
}

TEST_F(CanaryTest, TransportFailuresAndBadFeedsSayNothingOfTheKey)
{
    startModel();
    syncAgainst(
        [](const LoopbackRequest &request) { return LoopbackReply::ok("<html>" + request.target + "</html>"); });
    syncAgainst([](const LoopbackRequest &request) { return LoopbackReply::redirect("file:///" + request.target); });
    syncAgainst([](const LoopbackRequest &request) { return LoopbackReply::redirect("http://[" + request.target); });
    syncAgainst([](const LoopbackRequest &) { return LoopbackReply::hangUp(); });
    syncAgainst([](const LoopbackRequest &request) { return LoopbackReply::raw("HTTP/1.1 " + request.target); });
    goodreads.refuse();
    syncAgainst([](const LoopbackRequest &) { return LoopbackReply::hangUp(); });
    expectNothingLeaked();
}

TEST_F(CanaryTest, AFailingLibrarySaysNothingOfTheKey)
{
    startModel();
    serveFeed({QStringLiteral("A title")});
    failOn(library, QStringLiteral("INSERT"), QStringLiteral("goodreads_books"), QStringLiteral("1"));
    await(model->synchronizeGoodreads(false));
    said.append(model->notice() ? model->notice()->message : QString());
    EXPECT_FALSE(said.last().isEmpty());
    expectNothingLeaked();
}

TEST_F(CanaryTest, BackupsDoNotHoldIt)
{
    startModel();
    await(model->backUpDatabase());
    EXPECT_FALSE(QDir(library.file(QStringLiteral("Database Backups"))).isEmpty());
    expectNothingLeaked();
}

// An earlier version kept them in the library: its pages are overwritten.
TEST_F(CanaryTest, ALibraryThatHeldThemHoldsThemNoMore)
{
    ASSERT_TRUE(QFile::remove(library.file(QStringLiteral("Credentials.plist"))));
    library.execute("INSERT INTO settings VALUES ('goodreadsRssKey', ?), ('netlifyToken', ?)", {feedKey, token});
    EXPECT_EQ(filesWithSecrets(library.folder()), QStringList{QStringLiteral("quire.db")});
    startModel();
    expectNothingLeaked();
    EXPECT_EQ(filesWithSecrets(library.folder()), credentialFileAlone);
}

TEST_F(CanaryTest, AnUnwritableCredentialFileIsToldWithoutThem)
{
    library.open();
    {
        const UnprivilegedUser nobody(library.folder());
        if (::geteuid() != 0) {
            QFile::setPermissions(library.folder(), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        }
        try {
            await(library.store().setSetting(QStringLiteral("netlifyToken"), token + QStringLiteral(" and more")));
            ADD_FAILURE() << "it was written";
        } catch (const Failure &failure) {
            said.append(failure.description());
        }
    }
    QFile::setPermissions(library.folder(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    library.close();
    expectNothingLeaked();
}

// Whoever looks, however often: no file with a secret in it is ever readable by
// others, the temporary one included.
TEST_F(CanaryTest, TheCredentialFileIsNeverReadableByOthers)
{
    const mode_t former = ::umask(0);
    std::atomic<bool> isOver = false;
    std::atomic<int> looks = 0;
    std::atomic<int> wide = 0;
    std::thread watcher([&] {
        while (!isOver) {
            for (const QString &name :
                QDir(library.folder())
                    .entryList({QStringLiteral("*Credentials*")}, QDir::Files | QDir::Hidden | QDir::System)) {
                struct stat status
                {
                };
                if (::stat(QFile::encodeName(library.file(name)).constData(), &status) == 0) {
                    ++looks;
                    wide += (status.st_mode & 0777) != 0600;
                }
            }
        }
    });
    library.open();
    const int rounds = Torture::scaled(200);
    for (int i = 0; i < rounds; ++i) {
        await(library.store().setSetting(QStringLiteral("netlifyToken"), token + QString::number(i)));
    }
    library.close();
    isOver = true;
    watcher.join();
    ::umask(former);
    torture.addRounds(rounds);
    EXPECT_GT(looks, 0);
    EXPECT_EQ(wide, 0);
}

// The control: a secret in any field of the library is found.
TEST_F(CanaryTest, ASecretInANoteIsFound)
{
    addBook(QStringLiteral("A title with ") + token);
    EXPECT_THAT(filesWithSecrets(library.folder()), ::testing::Contains(QStringLiteral("quire.db")));
    EXPECT_TRUE(holdsSecret(QStringLiteral("GET /?key=") + QString::fromLatin1(QUrl::toPercentEncoding(feedKey))));
    EXPECT_FALSE(holdsSecret(QStringLiteral("nothing of note")));
}
