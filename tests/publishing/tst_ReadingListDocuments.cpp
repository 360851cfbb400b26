// Whole documents, byte for byte, against the ones in golden/. After a change that
// is meant, QUIRE_WRITE_GOLDEN=1 writes them anew; read the difference before it
// is committed.

#include "publishing/ReadingListRenderer.h"

#include "SampleLibraries.h"
#include "testing/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace quire;
using namespace quire::testing;

namespace {

struct Document
{
    const char *library;
    PublishingSnapshot (*make)();
    const char *locale;
};

PublishingSnapshot large()
{
    return largeLibrary(120);
}

void expectGolden(const QString &name, const QString &text)
{
    const QString path = QStringLiteral(QUIRE_GOLDEN_DOCUMENTS "/") + name;
    const QByteArray bytes = text.toUtf8();
    if (qEnvironmentVariableIsSet("QUIRE_WRITE_GOLDEN")) {
        putFile(path, bytes);
    }
    const QByteArray golden = bytesOf(path);
    const auto difference = std::mismatch(bytes.begin(), bytes.end(), golden.begin(), golden.end());
    const qsizetype at = difference.first - bytes.begin();
    EXPECT_TRUE(bytes == golden) << name.toStdString() << " differs at byte " << at << ": it has “"
                                 << bytes.mid(std::max<qsizetype>(0, at - 40), 120).constData() << "” and not “"
                                 << golden.mid(std::max<qsizetype>(0, at - 40), 120).constData() << "”";
}

class ReadingListDocuments : public ::testing::TestWithParam<Document>
{
};

} // namespace

TEST_P(ReadingListDocuments, AreAsTheyWerePublishedBefore)
{
    const PublishingSnapshot snapshot = GetParam().make();
    const QLocale locale(QLatin1String(GetParam().locale));
    const QString name = QLatin1String(GetParam().library) + u'-' + QLatin1String(GetParam().locale);
    expectGolden(name + QStringLiteral(".md"), ReadingListRenderer::markdown(snapshot, locale));
    expectGolden(name + QStringLiteral(".html"), ReadingListRenderer::html(snapshot, locale));
}

INSTANTIATE_TEST_SUITE_P(Golden, ReadingListDocuments,
    ::testing::Values(Document{"empty", emptyLibrary, "en_US"}, Document{"empty", emptyLibrary, "nb_NO"},
        Document{"empty", emptyLibrary, "ja_JP"}, Document{"small", smallLibrary, "en_US"},
        Document{"small", smallLibrary, "en_GB"}, Document{"small", smallLibrary, "nb_NO"},
        Document{"small", smallLibrary, "de_DE"}, Document{"small", smallLibrary, "ar_EG"},
        Document{"large", large, "en_US"}, Document{"large", large, "fr_FR"},
        Document{"hostile", hostileLibrary, "en_US"}, Document{"hostile", hostileLibrary, "nb_NO"}),
    [](const auto &parameter) { return std::string(parameter.param.library) + "_" + parameter.param.locale; });
