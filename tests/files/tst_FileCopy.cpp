#include "files/FileCopy.h"

#include "files/FileError.h"
#include "testing/SmallDisk.h"
#include "testing/TestFiles.h"
#include "testing/ThrownFailure.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;

namespace {

class FileCopyTest : public ::testing::Test
{
protected:
    QString file(const char *name) const { return m_folder.filePath(QString::fromLatin1(name)); }

    // The errno that the copy from `source` fails with.
    int failure(const QString &source) const
    {
        const auto error = thrownBy<FileError>([&] { FileCopy::copy(source, file("copy"), {}); });
        return error ? error->code() : 0;
    }

    QTemporaryDir m_folder;
    QString m_source = file("source");
    QString m_copy = file("copy");
};

// Bytes that tell where they stood.
QByteArray numbered(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype at = 0; at < size; ++at) {
        bytes[at] = char((at >> 16) ^ at);
    }
    return bytes;
}

} // namespace

TEST_F(FileCopyTest, EveryByteArrivesWhateverTheSize)
{
    for (const qsizetype size : {0, 1, 8 << 20, (20 << 20) + 3}) {
        const QByteArray bytes = numbered(size);
        putFile(m_source, bytes);
        EXPECT_TRUE(FileCopy::copy(m_source, m_copy, {}));
        EXPECT_TRUE(bytesOf(m_copy) == bytes) << size;
        QFile::remove(m_copy);
    }
}

TEST_F(FileCopyTest, EveryByteArrivesFromAnotherDisk)
{
    const QTemporaryDir memory(QStringLiteral("/dev/shm/XXXXXX"));
    if (!memory.isValid()) {
        GTEST_SKIP() << "there is no other disk";
    }
    const QByteArray bytes = numbered((9 << 20) + 7);
    putFile(memory.filePath(QStringLiteral("source")), bytes);
    EXPECT_TRUE(FileCopy::copy(memory.filePath(QStringLiteral("source")), m_copy, {}));
    EXPECT_TRUE(bytesOf(m_copy) == bytes);
}

TEST_F(FileCopyTest, TheCopyIsForItsOwnerAloneAndTheSourceAsItWas)
{
    putFile(m_source, "bytes");
    ::chmod(QFile::encodeName(m_source).constData(), 0444);
    const QFileInfo before(m_source);
    FileCopy::copy(m_source, m_copy, {});
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(m_copy).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, S_IRUSR | S_IWUSR);
    const QFileInfo after(m_source);
    EXPECT_EQ(after.lastModified(), before.lastModified());
    EXPECT_EQ(after.permissions(), before.permissions());
}

TEST_F(FileCopyTest, ALinkIsCopiedAsWhatItLeadsTo)
{
    putFile(file("target"), "bytes");
    QFile::link(file("target"), m_source);
    EXPECT_TRUE(FileCopy::copy(m_source, m_copy, {}));
    EXPECT_FALSE(QFileInfo(m_copy).isSymLink());
    EXPECT_EQ(bytesOf(m_copy), "bytes");
}

TEST_F(FileCopyTest, WhatIsNoOrdinaryFileIsRefusedWithoutWaiting)
{
    EXPECT_EQ(failure(file("nowhere")), ENOENT);
    EXPECT_EQ(failure(m_folder.path()), EISDIR);
    EXPECT_EQ(failure(QStringLiteral("/dev/zero")), EINVAL);
    ASSERT_EQ(::mkfifo(QFile::encodeName(file("pipe")).constData(), 0600), 0);
    EXPECT_EQ(failure(file("pipe")), EINVAL);
    EXPECT_FALSE(QFileInfo::exists(m_copy));
}

TEST_F(FileCopyTest, AFileThatMayNotBeReadIsAFailure)
{
    putFile(m_source, "bytes");
    ::chmod(QFile::encodeName(m_source).constData(), 0);
    const UnprivilegedUser nobody(m_folder.path());
    EXPECT_EQ(failure(m_source), EACCES);
}

TEST_F(FileCopyTest, NothingIsReplaced)
{
    putFile(m_source, "bytes");
    putFile(m_copy, "other");
    EXPECT_EQ(failure(m_source), EEXIST);
    EXPECT_EQ(bytesOf(m_copy), "other");
    QFile::remove(m_copy);
    QFile::link(file("elsewhere"), m_copy);
    EXPECT_EQ(failure(m_source), EEXIST);
    EXPECT_FALSE(QFileInfo::exists(file("elsewhere")));
}

TEST_F(FileCopyTest, ARequestToStopEndsTheCopy)
{
    putFile(m_source, "bytes");
    std::stop_source stop;
    stop.request_stop();
    EXPECT_FALSE(FileCopy::copy(m_source, m_copy, stop.get_token()));
}

TEST_F(FileCopyTest, AFileThatDoesNotFitIsAFailure)
{
    if (!SmallDisk::isAvailable()) {
        GTEST_SKIP() << "needs the right to mount";
    }
    putFile(m_source, QByteArray(1 << 20, 'x'));
    const QString folder = file("disk");
    QDir().mkpath(folder);
    SmallDisk disk(folder);
    disk.leaveBlocks(20);
    const auto error = thrownBy<FileError>([&] { FileCopy::copy(m_source, folder + QStringLiteral("/copy"), {}); });
    EXPECT_EQ(error->code(), ENOSPC);
    EXPECT_EQ(
        error->description(), QStringLiteral("Could not copy the file “%1”: No space left on device").arg(m_source));
    EXPECT_EQ(QFileInfo(folder + QStringLiteral("/copy")).size(), 0); // not a byte of it
}
