#include "faults/RelocationDeeds.h"

#include "files/DurableFile.h"
#include "persistence/AppDirectories.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/OldLibraries.h"
#include "persistence/QuireLibraryLocation.h"

#include <QDir>

namespace quire::testing {

namespace {

const QString database = QStringLiteral("quire.db");

// Within the default folder, so that the bench watches them all.
QString folderNamed(const QString &name)
{
    return name.isEmpty() ? AppDirectories::supportDirectory()
                          : QStringLiteral("%1/%2").arg(AppDirectories::supportDirectory(), name);
}

// What is remembered of a path is of no use in the folder of another bench.
FolderImage withoutMemory(FolderImage image)
{
    image.removeIf([](const auto &file) { return file.key().startsWith(QStringLiteral("Cloud Library State/")); });
    return image;
}

// A library that was moved to "Elsewhere" and edited there; the one that it left
// behind lies in the default folder.
FolderImage movedLibrary(const FolderImage &filled)
{
    FaultBench bench(Place::DefaultFolder);
    bench.reset(filled);
    bench.open();
    done(bench.store().relocateDatabase(folderNamed(QStringLiteral("Elsewhere"))));
    done(bench.store().updateBook(2, 4, QStringLiteral("read"), QStringLiteral("Noted elsewhere")));
    bench.close();
    FolderImage image = withoutMemory(bench.image());
    image.insert(QStringLiteral("Library Location.json"), R"({"path":"~/Elsewhere"})"); // the bench's, wherever it is
    return image;
}

FolderImage withOldLibrary(const FolderImage &filled)
{
    FaultBench bench(Place::DefaultFolder);
    bench.reset(filled);
    QDir().mkpath(folderNamed(QStringLiteral("Old")));
    OldLibraries::createVersion1(folderNamed(QStringLiteral("Old/quire.db")));
    return withoutMemory(bench.image());
}

} // namespace

void addMoves(std::vector<Deed> &deeds, Place place, const FolderImage &filled)
{
    if (place != Place::DefaultFolder) {
        return;
    }
    const auto move = [&](const char *name, const FolderImage &start, const QString &folder) {
        deeds.push_back({name, Deed::Kind::Edit, start,
            [folder](LibraryStore &store) { done(store.relocateDatabase(folderNamed(folder))); }, {}, "R15"});
    };
    const FolderImage moved = movedLibrary(filled);
    FolderImage movedAlone = moved;
    movedAlone.remove(database);
    move("move to a chosen folder", withoutMemory(filled), QStringLiteral("It's 100% 読書"));
    move("move from one chosen folder to another", moved, QStringLiteral("Third"));
    move("move back to the default folder", movedAlone, {});
    move("return to the library that was left", moved, {});
    move("adoption of an older library", withOldLibrary(filled), QStringLiteral("Old"));
}

Deed carelessMove(const FolderImage &filled)
{
    return {"careless move", Deed::Kind::Edit, withoutMemory(filled), [](LibraryStore &store) {
                const QString folder = folderNamed(QStringLiteral("Careless"));
                DurableFile::createFolder(folder);
                QuireLibraryLocation::save(folder, QuireLibraryLocation::recordURL());
                SQLiteDatabase::backUp(done(store.databaseURL()), QStringLiteral("%1/%2").arg(folder, database));
                done(store.relocateDatabase(folder));
            }};
}

} // namespace quire::testing
