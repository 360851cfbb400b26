#include "fuzz/Targets.h"

#include "testing/TestFiles.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace quire;
using namespace quire::testing;

namespace {

class FuzzCorpus : public ::testing::TestWithParam<fuzz::Target>
{
};

} // namespace

// A target ends the process at the first promise that does not hold.
TEST_P(FuzzCorpus, HoldsForEveryInput)
{
    const QDir folder(QStringLiteral(QUIRE_FUZZ_CORPORA "/") + QString::fromLatin1(GetParam().name));
    const QStringList inputs = folder.entryList(QDir::Files);
    ASSERT_FALSE(inputs.isEmpty()) << qPrintable(folder.path());
    for (const QString &input : inputs) {
        SCOPED_TRACE(qPrintable(input));
        const QByteArray bytes = bytesOf(folder.filePath(input));
        GetParam().run(bytes);
        // Cut anywhere, it is as good an input as whole.
        for (qsizetype cut = 0; cut < bytes.size(); cut += 1 + bytes.size() / 64) {
            GetParam().run(bytes.first(cut));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzCorpus, ::testing::ValuesIn(fuzz::targets),
    [](const auto &info) { return std::string(info.param.name); });
