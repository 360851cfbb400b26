// The tables of the library as its first version had them.

#pragma once

namespace quire {

class SQLiteDatabase;

namespace BaseSchema {

// Creates what is missing of the four base tables and their indices, and leaves
// alone what is there. Throws DatabaseError Execute.
void create(SQLiteDatabase &database);

} // namespace BaseSchema
} // namespace quire
