#include "reliability/LeaseGuard.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <mutex>

#include <sys/stat.h>

namespace quire {

namespace {

// A runtime directory of the test's own.
class LeaseGuardTest : public ::testing::Test
{
protected:
    LeaseGuardTest()
    {
        QDir(places.path()).mkpath(QStringLiteral("runtime"));
        QDir(places.path()).mkpath(QStringLiteral("library"));
        use(runtime);
    }
    ~LeaseGuardTest() override { qputenv("XDG_RUNTIME_DIR", former); }

    static void use(const QString &folder) { qputenv("XDG_RUNTIME_DIR", QFile::encodeName(folder)); }

    QStringList guards() const { return QDir(runtime + QStringLiteral("/quire")).entryList(QDir::Files); }

    QByteArray former = qgetenv("XDG_RUNTIME_DIR");
    QTemporaryDir places;
    QString runtime = places.filePath(QStringLiteral("runtime"));
    QString library = places.filePath(QStringLiteral("library"));
};

} // namespace

TEST_F(LeaseGuardTest, OneHasItAtATime)
{
    LeaseGuard first(library);
    LeaseGuard second(library);
    ASSERT_TRUE(first.try_lock());
    EXPECT_FALSE(second.try_lock());
    first.unlock();
    EXPECT_TRUE(second.try_lock());
    EXPECT_FALSE(first.try_lock());
}

TEST_F(LeaseGuardTest, ItIsLetGoOfWithItsHolder)
{
    LeaseGuard second(library);
    {
        LeaseGuard first(library);
        ASSERT_TRUE(first.try_lock());
    }
    EXPECT_TRUE(second.try_lock());
}

TEST_F(LeaseGuardTest, EveryPathToAFolderLeadsToOneGuard)
{
    const QString link = places.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(library, link));
    LeaseGuard first(library);
    ASSERT_TRUE(first.try_lock());
    EXPECT_FALSE(LeaseGuard(link).try_lock());
    EXPECT_FALSE(LeaseGuard(library + QStringLiteral("/../library/")).try_lock());

    const QString moved = places.filePath(QStringLiteral("moved"));
    ASSERT_TRUE(QDir().rename(library, moved));
    EXPECT_FALSE(LeaseGuard(moved).try_lock());
}

TEST_F(LeaseGuardTest, TwoLibrariesHaveTwoGuards)
{
    LeaseGuard first(library);
    LeaseGuard second(places.path());
    EXPECT_TRUE(first.try_lock());
    EXPECT_TRUE(second.try_lock());
    EXPECT_EQ(guards().size(), 2);
}

TEST_F(LeaseGuardTest, ItsFileIsTheUsersAloneAndStays)
{
    {
        LeaseGuard guard(library);
        ASSERT_TRUE(guard.try_lock());
    }
    ASSERT_EQ(guards().size(), 1);
    const QString folder = runtime + QStringLiteral("/quire");
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(folder).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700U);
    ASSERT_EQ(::stat(QFile::encodeName(folder + u'/' + guards().first()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST_F(LeaseGuardTest, AFolderThatOthersCanWriteIntoIsPassedOver)
{
    const QString folder = runtime + QStringLiteral("/quire");
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_EQ(::chmod(QFile::encodeName(folder).constData(), 0777), 0);
    LeaseGuard first(library);
    EXPECT_TRUE(first.try_lock());
    EXPECT_FALSE(LeaseGuard(library).try_lock()); // there is another place
    EXPECT_TRUE(guards().isEmpty());
}

TEST_F(LeaseGuardTest, WithoutARuntimeDirectoryThereIsAnotherPlace)
{
    for (const QString &place : {places.filePath(QStringLiteral("none")), QString()}) {
        use(place);
        LeaseGuard first(library);
        EXPECT_TRUE(first.try_lock());
        EXPECT_FALSE(LeaseGuard(library).try_lock()) << place.toStdString();
    }
}

// Two processes would look for it in two places.
TEST_F(LeaseGuardTest, ARelativeRuntimeDirectoryIsNone)
{
    const QString former = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(places.path()));
    use(QStringLiteral("runtime"));
    EXPECT_TRUE(LeaseGuard(library).try_lock());
    EXPECT_TRUE(guards().isEmpty());
    QDir::setCurrent(former);
}

TEST_F(LeaseGuardTest, WhereNoneCanBeHadNobodyIsStopped)
{
    const QString none = places.filePath(QStringLiteral("none"));
    LeaseGuard first(none);
    LeaseGuard second(none);
    EXPECT_TRUE(first.try_lock());
    EXPECT_TRUE(second.try_lock());
    first.unlock();
    second.unlock();
}

} // namespace quire
