#include "files/SmallFile.h"

#include "files/Descriptor.h"
#include "testing/TestFiles.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;

namespace {

class SmallFileTest : public ::testing::Test
{
protected:
    void put(const QByteArray &bytes) const { putFile(path, bytes); }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("record"));
};

} // namespace

TEST_F(SmallFileTest, AFileIsReadWholeUpToTheLimit)
{
    for (const qsizetype size : {qsizetype(0), qsizetype(1), qsizetype(SmallFile::maximumBytes)}) {
        const QByteArray bytes(size, 'x');
        put(bytes);
        EXPECT_EQ(SmallFile::read(path), bytes) << size;
    }
}

TEST_F(SmallFileTest, ALongerFileIsNothing)
{
    put(QByteArray(SmallFile::maximumBytes + 1, 'x'));
    EXPECT_EQ(SmallFile::read(path), std::nullopt);
}

TEST_F(SmallFileTest, TheLimitCanBeLower)
{
    put("twelve bytes");
    EXPECT_EQ(SmallFile::read(path, 12), "twelve bytes");
    EXPECT_EQ(SmallFile::read(path, 11), std::nullopt);
}

TEST_F(SmallFileTest, AnOpenFileIsReadAndStaysOpen)
{
    put("record");
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(SmallFile::read(file.number()), "record");
    EXPECT_EQ(::lseek(file.number(), 0, SEEK_SET), 0);
    EXPECT_EQ(SmallFile::read(file.number()), "record");
    EXPECT_EQ(SmallFile::read(-1), std::nullopt);
}

TEST_F(SmallFileTest, AMissingFileAndAFolderAreNothing)
{
    EXPECT_EQ(SmallFile::read(path), std::nullopt);
    QDir().mkpath(path);
    EXPECT_EQ(SmallFile::read(path), std::nullopt);
}

TEST_F(SmallFileTest, APipeThatNobodyWritesToIsNothingAndIsNotWaitedFor)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EXPECT_EQ(SmallFile::read(path), std::nullopt);
}

TEST_F(SmallFileTest, ADeviceWithoutEndIsNothing)
{
    EXPECT_EQ(SmallFile::read(QStringLiteral("/dev/zero")), std::nullopt);
}

TEST_F(SmallFileTest, AFileThatNobodyMayReadIsNothing)
{
    put("x");
    QFile::setPermissions(path, {});
    const UnprivilegedUser user(folder.path());
    EXPECT_EQ(SmallFile::read(path), std::nullopt);
}
