#include "persistence/CloudLineage.h"

#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/LibraryFile.h"
#include "persistence/RecoveryCopies.h"
#include "records/DateParser.h"
#include "reliability/QuireReliabilityError.h"

namespace quire::CloudLineage {

namespace {

constexpr QStringView rollback = u"Cloud Rollback";

void preserve(const LineageSurroundings &surroundings, QStringView reason)
{
    RecoveryCopies::preserveDatabaseForRecovery(
        surroundings.databaseURL, reason.toString(), surroundings.localStateDirectory, surroundings.now);
}

} // namespace

QuireCloudLineage currentLineage(const SQLiteDatabase &database, Instant now)
{
    const auto rows
        = database.query("SELECT library_uuid, generation, lineage_token FROM library_metadata WHERE singleton = 1");
    if (rows.isEmpty()) {
        throw DatabaseError(DatabaseError::Kind::Open, QStringLiteral("The library identity record is missing."));
    }
    const SQLiteRow &row = rows.first();
    return {.libraryUUID = row.string(QStringLiteral("library_uuid"), {}),
        .generation = row.intValue(QStringLiteral("generation")).value_or(0),
        .lineageToken = row.string(QStringLiteral("lineage_token"), {}),
        .recordedAt = DateParser::iso8601(now)};
}

void requireRememberedFile(const LineageSurroundings &surroundings)
{
    if (!surroundings.memory.read(surroundings.databaseURL)) {
        return;
    }
    switch (LibraryFile::contentOf(surroundings.databaseURL)) {
    case LibraryFile::Content::NoDatabase:
        preserve(surroundings, rollback);
        throw QuireReliabilityError::cloudLibraryRolledBack();
    case LibraryFile::Content::Missing:
        // What would be made here is another library, and a sync service would
        // carry it to where the remembered one still is.
        throw QuireReliabilityError::cloudLibraryDiverged();
    case LibraryFile::Content::Unknown:
        // It may be one of the above, and readable a moment later.
        throw DatabaseError(DatabaseError::Kind::Open, QStringLiteral("unable to open database file"));
    case LibraryFile::Content::Database:
        return;
    }
}

void validateCloudLineage(SQLiteDatabase &database, const LineageSurroundings &surroundings)
{
    const QuireCloudLineage current = currentLineage(database, surroundings.now);
    const auto remembered = surroundings.memory.read(surroundings.databaseURL);
    if (!remembered) {
        return;
    }
    const auto refuse = [&](QStringView reason, const QuireReliabilityError &failure) {
        database.setFoldsLogOnClose(false);
        database.close();
        preserve(surroundings, reason);
        throw failure;
    };
    switch (compare(current, *remembered)) {
    case LineageFinding::OtherLibrary:
        refuse(u"Library Identity Conflict", QuireReliabilityError::cloudLibraryDiverged());
        break;
    case LineageFinding::RolledBack:
        refuse(rollback, QuireReliabilityError::cloudLibraryRolledBack());
        break;
    case LineageFinding::Diverged:
        refuse(u"Cloud Divergence", QuireReliabilityError::cloudLibraryDiverged());
        break;
    case LineageFinding::MovedOn:
    case LineageFinding::Unchanged:
        break;
    }
}

void remember(SQLiteDatabase &database, const LineageSurroundings &surroundings)
{
    const QuireCloudLineage lineage = currentLineage(database, surroundings.now);
    database.makeDurable();
    surroundings.memory.save(lineage, surroundings.databaseURL);
}

} // namespace quire::CloudLineage
