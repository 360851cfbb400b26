// The steps between the versions of the schema, oldest first. Append only: a
// step that a library has taken is never changed.

#pragma once

namespace quire {

class SQLiteDatabase;

namespace MigrationSteps {

// Columns that the base tables of the earliest files lack.
// Throws DatabaseError.
void toVersion1(SQLiteDatabase &database);

// Identity and lineage, provenance, job history, verified backups.
// Throws DatabaseError.
void toVersion2(SQLiteDatabase &database);

} // namespace MigrationSteps
} // namespace quire
