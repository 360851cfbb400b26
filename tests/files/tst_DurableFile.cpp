#include "files/DurableFile.h"

#include "files/FileError.h"
#include "testing/ResourceLimit.h"
#include "testing/ThrownFailure.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cerrno>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;

namespace {

class DurableFileTest : public ::testing::Test
{
protected:
    QString file(const QString &name) const { return m_folder.filePath(name); }

    QByteArray content(const QString &name) const
    {
        QFile in(file(name));
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray("(unreadable)");
    }

    // Hidden ones too: a temporary file is one of them.
    QStringList names() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    mode_t modeOf(const QString &name) const
    {
        struct stat status
        {
        };
        EXPECT_EQ(::stat(QFile::encodeName(file(name)).constData(), &status), 0);
        return status.st_mode & 07777;
    }

    QTemporaryDir m_folder;
};

using DurableFileDeathTest = DurableFileTest;

} // namespace

TEST_F(DurableFileTest, CreatesAndReplacesAFileAndLeavesNothingElse)
{
    DurableFile::write(file(QStringLiteral("a")), "first");
    DurableFile::write(file(QStringLiteral("a")), QByteArray(100'000, 'x'));
    EXPECT_EQ(content(QStringLiteral("a")), QByteArray(100'000, 'x'));
    DurableFile::write(file(QStringLiteral("a")), {});
    EXPECT_EQ(content(QStringLiteral("a")), QByteArray());
    EXPECT_EQ(names(), QStringList{QStringLiteral("a")});
}

TEST_F(DurableFileTest, TheModeIsTheOneAskedForWhateverWasThereAndWhateverTheMask)
{
    const mode_t mask = ::umask(0077);
    DurableFile::write(file(QStringLiteral("a")), "x");
    ::umask(0);
    EXPECT_EQ(modeOf(QStringLiteral("a")), mode_t(0644));
    DurableFile::write(file(QStringLiteral("a")), "x", 0600);
    EXPECT_EQ(modeOf(QStringLiteral("a")), mode_t(0600));
    ::umask(mask);
}

TEST_F(DurableFileTest, AMissingFolderIsTheCallersAffair)
{
    const QString path = file(QStringLiteral("none/a"));
    const auto failure = thrownBy<FileError>([&] { DurableFile::write(path, "x"); });
    EXPECT_EQ(failure->path(), path);
    EXPECT_EQ(failure->code(), ENOENT);
    EXPECT_EQ(
        failure->description(), QStringLiteral("Could not write the file “%1”: No such file or directory").arg(path));
}

TEST_F(DurableFileTest, AFolderOfThatNameStaysAndNoTemporaryFileDoes)
{
    QDir().mkpath(file(QStringLiteral("a/b")));
    EXPECT_EQ(thrownBy<FileError>([&] { DurableFile::write(file(QStringLiteral("a")), "x"); })->code(), EISDIR);
    EXPECT_EQ(names(), QStringList{QStringLiteral("a")});
}

TEST_F(DurableFileTest, AFullDiskLeavesTheOldFile)
{
    DurableFile::write(file(QStringLiteral("a")), "old");
    // A limit on the size of files stands in for the full disk.
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = ::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{1000, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const auto failure
        = thrownBy<FileError>([&] { DurableFile::write(file(QStringLiteral("a")), QByteArray(5000, 'n')); });
    ::setrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, handler);
    EXPECT_EQ(failure->code(), EFBIG);
    EXPECT_EQ(content(QStringLiteral("a")), "old");
    EXPECT_EQ(names(), QStringList{QStringLiteral("a")});
}

TEST_F(DurableFileDeathTest, AProcessThatDiesInTheMiddleLeavesTheOldFileAndHasShownNobodyTheNewOne)
{
    DurableFile::write(file(QStringLiteral("a")), "old");
    const auto die = [this] {
        ::umask(0);
        const rlimit small{1000, 1000};
        ::setrlimit(RLIMIT_FSIZE, &small);
        DurableFile::write(file(QStringLiteral("a")), QByteArray(5000, 'n'), 0600);
    };
    EXPECT_EXIT(die(), ::testing::KilledBySignal(SIGXFSZ), "");
    EXPECT_EQ(content(QStringLiteral("a")), "old");
    const QStringList all = names();
    ASSERT_EQ(all.size(), 2);
    EXPECT_EQ(QFileInfo(file(all[0])).size(), 1000) << "half of the new file";
    EXPECT_EQ(modeOf(all[0]), mode_t(0600));
}

TEST_F(DurableFileTest, AFolderThatTakesNoFilesIsAFailure)
{
    QDir().mkpath(file(QStringLiteral("locked")));
    ::chmod(QFile::encodeName(file(QStringLiteral("locked"))).constData(), 0555);
    const UnprivilegedUser user(m_folder.path());
    EXPECT_EQ(thrownBy<FileError>([&] { DurableFile::write(file(QStringLiteral("locked/a")), "x"); })->code(), EACCES);
}

TEST_F(DurableFileTest, ARemovedFileIsGone)
{
    DurableFile::write(file(QStringLiteral("a")), "x");
    DurableFile::remove(file(QStringLiteral("a")));
    EXPECT_EQ(names(), QStringList());
}

TEST_F(DurableFileTest, RemovingAFileThatIsNotThereIsAFailure)
{
    const QString path = file(QStringLiteral("a"));
    const auto failure = thrownBy<FileError>([&] { DurableFile::remove(path); });
    EXPECT_EQ(failure->code(), ENOENT);
    EXPECT_EQ(
        failure->description(), QStringLiteral("Could not remove the file “%1”: No such file or directory").arg(path));
}

TEST_F(DurableFileTest, ACopyIsWholeAndReplacesWhatWasThere)
{
    const QByteArray large = QByteArray("abc").repeated(1'000'000);
    DurableFile::write(file(QStringLiteral("a")), large);
    DurableFile::write(file(QStringLiteral("b")), "old");
    DurableFile::copy(file(QStringLiteral("a")), file(QStringLiteral("b")));
    EXPECT_EQ(content(QStringLiteral("a")), large);
    EXPECT_EQ(content(QStringLiteral("b")), large);
    EXPECT_EQ(names().size(), 2);
}

TEST_F(DurableFileTest, ACopyOfWhatCannotBeReadLeavesNothing)
{
    QDir().mkpath(file(QStringLiteral("folder")));
    const QString target = file(QStringLiteral("b"));
    for (const QString &name : {QStringLiteral("missing"), QStringLiteral("folder")}) {
        EXPECT_EQ(thrownBy<FileError>([&] { DurableFile::copy(file(name), target); })->path(), file(name));
    }
    EXPECT_EQ(names(), QStringList{QStringLiteral("folder")});
}

TEST_F(DurableFileTest, ACopyToAFolderThatIsNotThereIsAFailureOfTheCopy)
{
    DurableFile::write(file(QStringLiteral("a")), "x");
    const QString target = file(QStringLiteral("missing/b"));
    EXPECT_EQ(thrownBy<FileError>([&] { DurableFile::copy(file(QStringLiteral("a")), target); })->path(), target);
    EXPECT_EQ(names(), QStringList{QStringLiteral("a")});
}

TEST_F(DurableFileTest, AFolderIsCreatedWithItsParentsAndMayExist)
{
    DurableFile::createFolder(file(QStringLiteral("a/b/c")));
    DurableFile::createFolder(file(QStringLiteral("a/b/c")));
    EXPECT_TRUE(QFileInfo(file(QStringLiteral("a/b/c"))).isDir());
}

TEST_F(DurableFileTest, AFileInTheWayOfAFolderIsAFailure)
{
    DurableFile::write(file(QStringLiteral("a")), "x");
    const QString path = file(QStringLiteral("a/b"));
    const auto failure = thrownBy<FileError>([&] { DurableFile::createFolder(path); });
    EXPECT_EQ(failure->code(), ENOTDIR);
    EXPECT_EQ(failure->description(), QStringLiteral("Could not create the folder “%1”: Not a directory").arg(path));
}

TEST_F(DurableFileTest, ALinkToAFolderIsAFolderAndABrokenOneIsAFailure)
{
    QDir().mkpath(file(QStringLiteral("a")));
    QFile::link(file(QStringLiteral("a")), file(QStringLiteral("link")));
    QFile::link(file(QStringLiteral("none")), file(QStringLiteral("broken")));
    DurableFile::createFolder(file(QStringLiteral("link/b")));
    EXPECT_TRUE(QFileInfo(file(QStringLiteral("a/b"))).isDir());
    EXPECT_THROW(DurableFile::createFolder(file(QStringLiteral("broken/b"))), FileError);
}

TEST_F(DurableFileTest, AFolderIsCreatedInOneThatMayBeWrittenButNotRead)
{
    QDir().mkpath(file(QStringLiteral("drop")));
    ::chmod(QFile::encodeName(file(QStringLiteral("drop"))).constData(), 0333);
    const UnprivilegedUser user(m_folder.path());
    DurableFile::createFolder(file(QStringLiteral("drop/a/b")));
    EXPECT_TRUE(QFileInfo(file(QStringLiteral("drop/a/b"))).isDir());
}

TEST_F(DurableFileTest, AWriteWhoseNameCannotBeSyncedTellsThatTheFileIsNewAllTheSame)
{
    const QString folder = file(QStringLiteral("unreadable"));
    QDir().mkpath(folder);
    ::chmod(QFile::encodeName(folder).constData(), 0333);
    {
        const UnprivilegedUser user(m_folder.path());
        const auto write = [&] { DurableFile::write(folder + QStringLiteral("/a"), "x"); };
        EXPECT_EQ(thrownBy<UnsyncedFileError>(write)->code(), EACCES);
    }
    ::chmod(QFile::encodeName(folder).constData(), 0755);
    EXPECT_EQ(content(QStringLiteral("unreadable/a")), "x");
}

TEST_F(DurableFileTest, AMovedFileHasItsNewNameAlone)
{
    DurableFile::write(file(QStringLiteral("a")), "x", 0600);
    DurableFile::move(file(QStringLiteral("a")), file(QStringLiteral("b")));
    EXPECT_EQ(names(), QStringList{QStringLiteral("b")});
    EXPECT_EQ(content(QStringLiteral("b")), "x");
    EXPECT_EQ(modeOf(QStringLiteral("b")), mode_t(0600));
}

TEST_F(DurableFileTest, AMoveReplacesNothingNotEvenABrokenLink)
{
    DurableFile::write(file(QStringLiteral("a")), "x");
    DurableFile::write(file(QStringLiteral("file")), "other");
    QDir().mkpath(file(QStringLiteral("folder")));
    QFile::link(file(QStringLiteral("none")), file(QStringLiteral("link")));
    for (const QString &name : {QStringLiteral("file"), QStringLiteral("folder"), QStringLiteral("link")}) {
        const QString target = file(name);
        const auto failure = thrownBy<FileError>([&] { DurableFile::move(file(QStringLiteral("a")), target); });
        EXPECT_EQ(failure->code(), EEXIST);
        EXPECT_EQ(failure->path(), target);
    }
    EXPECT_EQ(content(QStringLiteral("a")), "x");
    EXPECT_EQ(content(QStringLiteral("file")), "other");
    EXPECT_EQ(QFile::symLinkTarget(file(QStringLiteral("link"))), file(QStringLiteral("none")));
}

TEST_F(DurableFileTest, AMoveThatCannotBeMadeToLastIsTakenBack)
{
    const QString folder = file(QStringLiteral("unreadable"));
    QDir().mkpath(folder);
    DurableFile::write(folder + QStringLiteral("/a"), "x");
    ::chmod(QFile::encodeName(folder).constData(), 0333); // takes a rename, and cannot be opened to be synced
    {
        const UnprivilegedUser user(m_folder.path());
        const auto move = [&] { DurableFile::move(folder + QStringLiteral("/a"), folder + QStringLiteral("/b")); };
        EXPECT_EQ(thrownBy<FileError>(move)->code(), EACCES);
        EXPECT_TRUE(QFile::exists(folder + QStringLiteral("/a")));
        EXPECT_FALSE(QFile::exists(folder + QStringLiteral("/b")));
    }
    ::chmod(QFile::encodeName(folder).constData(), 0755);
}

TEST_F(DurableFileTest, WhatIsNotThereCannotBeMoved)
{
    EXPECT_EQ(
        thrownBy<FileError>([&] { DurableFile::move(file(QStringLiteral("a")), file(QStringLiteral("b"))); })->code(),
        ENOENT);
}

TEST_F(DurableFileTest, AMoveOverAFileReplacesIt)
{
    DurableFile::write(file(QStringLiteral("new")), "x", 0600);
    DurableFile::write(file(QStringLiteral("old")), "other");
    for (const QString &target : {QStringLiteral("old"), QStringLiteral("none yet")}) {
        DurableFile::write(file(QStringLiteral("new")), "x", 0600);
        DurableFile::moveOver(file(QStringLiteral("new")), file(target));
        EXPECT_EQ(content(target), "x");
        EXPECT_EQ(modeOf(target), mode_t(0600));
    }
    EXPECT_EQ(names(), QStringList({QStringLiteral("none yet"), QStringLiteral("old")}));
}

TEST_F(DurableFileTest, AMoveOverAFolderIsAFailureAndLeavesBoth)
{
    DurableFile::write(file(QStringLiteral("new")), "x");
    QDir().mkpath(file(QStringLiteral("folder")));
    const auto move = [&] { DurableFile::moveOver(file(QStringLiteral("new")), file(QStringLiteral("folder"))); };
    EXPECT_EQ(thrownBy<FileError>(move)->code(), EISDIR);
    EXPECT_EQ(names(), QStringList({QStringLiteral("folder"), QStringLiteral("new")}));
}

TEST_F(DurableFileTest, StreamsShortAndLongRunsOfBytesInTheirOrder)
{
    QByteArray expected;
    DurableFile::writeStreamed(file(QStringLiteral("a")), [&expected](QIODevice &device) {
        for (int run = 0; run < 300; ++run) {
            const QByteArray bytes(run % 7 == 0 ? run * 1000 : run, char('a' + run % 26));
            EXPECT_EQ(device.write(bytes), bytes.size());
            expected += bytes;
        }
    });

    EXPECT_EQ(content(QStringLiteral("a")), expected);
    EXPECT_EQ(names(), QStringList{QStringLiteral("a")});
}

TEST_F(DurableFileTest, KeepsTheOldFileWhenAStreamedOneIsNotFinished)
{
    DurableFile::write(file(QStringLiteral("a")), "old");

    EXPECT_THROW(DurableFile::writeStreamed(file(QStringLiteral("a")),
                     [](QIODevice &device) {
                         device.write("new");
                         throw std::runtime_error("changed its mind");
                     }),
        std::runtime_error);
    const auto failure = thrownBy<FileError>([this] {
        const ShortFiles full(100'000);
        DurableFile::writeStreamed(file(QStringLiteral("a")), [](QIODevice &device) {
            for (int run = 0; run < 50; ++run) {
                device.write(QByteArray(10'000, 'x')); // its answer is not looked at
            }
        });
    });

    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), EFBIG);
    EXPECT_EQ(failure->path(), file(QStringLiteral("a")));
    EXPECT_EQ(content(QStringLiteral("a")), "old");
    EXPECT_EQ(names(), QStringList{QStringLiteral("a")});
}
