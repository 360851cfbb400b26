SQL
CREATE INDEX hostile ON goodreads_books (title COLLATE NOCASE)
PRAGMA writable_schema = ON
UPDATE sqlite_schema SET sql = replace(sql, 'NOCASE', 'NONE') WHERE name = 'hostile'
