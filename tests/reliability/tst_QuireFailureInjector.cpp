#include "reliability/QuireFailureInjector.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace quire {

namespace {

using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char *enable = "QUIRE_ENABLE_FAILURE_TESTS";
constexpr const char *point = "QUIRE_FAILURE_POINT";

constexpr std::array points{"goodreads-after-staging", "audible-after-staging", "backup-after-copy",
    "relocation-after-copy", "migration-before-commit", "publishing-after-staging"};

class QuireFailureInjectorTest : public ::testing::Test
{
protected:
    void SetUp() override { clear(); }
    void TearDown() override { clear(); }

    static void clear()
    {
        qunsetenv(enable);
        qunsetenv(point);
    }
};

using QuireFailureInjectorDeathTest = QuireFailureInjectorTest;

TEST_F(QuireFailureInjectorTest, DoesNothingInANormalRun)
{
    QuireFailureInjector::checkpoint("backup-after-copy");
}

TEST_F(QuireFailureInjectorTest, APointAloneDoesNothing)
{
    qputenv(point, "backup-after-copy");
    QuireFailureInjector::checkpoint("backup-after-copy");
}

TEST_F(QuireFailureInjectorTest, OnlyExactlyOneEnables)
{
    qputenv(point, "backup-after-copy");
    for (const char *value : {"", "0", "2", "true", "yes", "01", "1 ", " 1", "11"}) {
        qputenv(enable, value);
        QuireFailureInjector::checkpoint("backup-after-copy");
    }
}

TEST_F(QuireFailureInjectorTest, AnotherPointOrAnUnknownNameDoesNothing)
{
    qputenv(enable, "1");
    QuireFailureInjector::checkpoint("backup-after-copy");
    QuireFailureInjector::checkpoint("");
    for (const char *value : {"", "backup-after", "backup-after-copy2", "Backup-After-Copy", "no-such-point"}) {
        qputenv(point, value);
        QuireFailureInjector::checkpoint("backup-after-copy");
    }
}

TEST_F(QuireFailureInjectorDeathTest, EveryPointEndsTheProcessWithItsStatusAndNoOther)
{
    for (const char *name : points) {
        const auto pass = [name] {
            qputenv(enable, "1");
            qputenv(point, name);
            for (const char *other : points) {
                if (qstrcmp(other, name) != 0) {
                    QuireFailureInjector::checkpoint(other);
                }
            }
            std::cerr << "reached" << std::endl;
            QuireFailureInjector::checkpoint(name);
            std::cerr << "passed" << std::endl;
        };
        EXPECT_EXIT(pass(), ExitedWithCode(86), ::testing::AllOf(HasSubstr("reached"), Not(HasSubstr("passed"))))
            << name;
    }
}

TEST_F(QuireFailureInjectorDeathTest, TheEnvironmentIsReadAnewAtEachPoint)
{
    const auto pass = [] {
        QuireFailureInjector::checkpoint("backup-after-copy");
        qputenv(point, "backup-after-copy");
        QuireFailureInjector::checkpoint("backup-after-copy");
        qputenv(enable, "1");
        QuireFailureInjector::checkpoint("backup-after-copy");
    };
    EXPECT_EXIT(pass(), ExitedWithCode(86), "");
}

TEST_F(QuireFailureInjectorDeathTest, RunsNoExitHandlersAndFlushesNothing)
{
    const QTemporaryDir directory;
    const QByteArray path = QFile::encodeName(directory.filePath(QStringLiteral("buffered")));
    const auto die = [&path] {
        std::atexit([] { std::cerr << "an exit handler ran" << std::endl; });
        std::FILE *const file = std::fopen(path.constData(), "w");
        std::fputs("half a record", file);
        qputenv(enable, "1");
        qputenv(point, "backup-after-copy");
        QuireFailureInjector::checkpoint("backup-after-copy");
    };
    EXPECT_EXIT(die(), ExitedWithCode(86), Not(HasSubstr("handler")));
    EXPECT_TRUE(QFile::exists(QFile::decodeName(path)));
    EXPECT_EQ(QFile(QFile::decodeName(path)).size(), 0);
}

} // namespace

} // namespace quire
