SQL
PRAGMA writable_schema = ON
DELETE FROM sqlite_schema
