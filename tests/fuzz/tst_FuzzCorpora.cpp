#include "Corpus.h"
#include "fuzz/Targets.h"

#include "testing/OwnDataDirectory.h"

#include <gtest/gtest.h>

using namespace quire;
using namespace quire::testing;

namespace {

class FuzzCorpus : public ::testing::TestWithParam<fuzz::Target>
{
    OwnDataDirectory m_data; // for what is logged
};

} // namespace

TEST_P(FuzzCorpus, HoldsForEveryInput)
{
    const QDir folder = corpusOf(GetParam().name);
    const QStringList inputs = folder.entryList(QDir::Files);
    ASSERT_FALSE(inputs.isEmpty()) << qPrintable(folder.path());
    for (const QString &input : inputs) {
        SCOPED_TRACE(qPrintable(input));
        for (const QByteArray &bytes : wholeAndCut(bytesOf(folder.filePath(input)))) {
            EXPECT_NO_THROW(GetParam().run(bytes)) << "of " << bytes.size() << " bytes";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzCorpus, ::testing::ValuesIn(fuzz::targets),
    [](const auto &info) { return std::string(info.param.name); });
