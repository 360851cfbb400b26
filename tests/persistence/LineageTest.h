// A library with a past, and the looks at it that the tests of its lineage
// share: the memory of it, the copies kept for recovery, the refusal.
//
// Thread: the test's.

#pragma once

#include "persistence/database/DatabaseError.h"
#include "reliability/QuireCloudLineage.h"
#include "reliability/QuireReliabilityError.h"
#include "testing/Await.h"
#include "testing/TestFiles.h"
#include "testing/TestLibrary.h"
#include "testing/ThrownFailure.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

namespace quire::testing {

class LineageTest : public ::testing::Test
{
protected:
    // A change that counts, by the store itself.
    static void addBook(LibraryStore &store, const QString &title)
    {
        ManualBookDraft draft;
        draft.title = title;
        await(store.addManualBook(draft, std::nullopt));
    }
    void addBook(const QString &title) { addBook(library.store(), title); }

    // What the machine remembers of the library.
    QuireCloudLineageStore memory() const
    {
        return QuireCloudLineageStore(library.file(QStringLiteral("Cloud Library State")));
    }
    QByteArray memoryBytes() const { return bytesOf(memory().recordURL(library.databasePath())); }

    // Names of the copies kept for recovery, those of migrations apart.
    QStringList copies() const
    {
        return QDir(library.file(QStringLiteral("Recovery"))).entryList(QDir::Files | QDir::Hidden);
    }
    QString copy(const QString &name) const { return library.file(QStringLiteral("Recovery/") + name); }

    // The failure of an opening, which leaves neither lease nor memory changed.
    std::optional<QuireReliabilityError> refusal()
    {
        const QByteArray remembered = memoryBytes();
        auto failure = thrownBy<QuireReliabilityError>([this] { library.open(); });
        EXPECT_FALSE(library.isLeaseHeld());
        EXPECT_EQ(memoryBytes(), remembered);
        EXPECT_THROW(await(library.store().books()), DatabaseError) << "it is open";
        return failure;
    }

    TestLibrary library{TestLibrary::Start::Closed};
};

} // namespace quire::testing
