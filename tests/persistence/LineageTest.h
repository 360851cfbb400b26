// A library with a past, and the looks at it that the tests of its lineage
// share: bytes of files, copies kept for recovery, whether the lease is held.
//
// Thread: the test's.

#pragma once

#include "persistence/database/DatabaseError.h"
#include "reliability/QuireCloudLineage.h"
#include "reliability/QuireReliabilityError.h"
#include "testing/Await.h"
#include "testing/TestLibrary.h"
#include "testing/ThrownFailure.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

namespace quire::testing {

class LineageTest : public ::testing::Test
{
protected:
    static void put(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
        file.write(bytes);
    }

    static QByteArray bytesOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
    }

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

    bool isLeaseHeld() const { return QFile::exists(library.file(QStringLiteral(".Quire Locks/Quire Library.lock"))); }

    // The failure of an opening, which leaves neither lease nor memory changed.
    std::optional<QuireReliabilityError> refusal()
    {
        const QByteArray remembered = memoryBytes();
        const auto failure = thrownBy<QuireReliabilityError>([this] { library.open(); });
        EXPECT_FALSE(isLeaseHeld());
        EXPECT_EQ(memoryBytes(), remembered);
        EXPECT_THROW(await(library.store().books()), DatabaseError) << "it is open";
        return failure;
    }

    TestLibrary library{TestLibrary::Start::Closed};
};

} // namespace quire::testing
