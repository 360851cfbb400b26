SQL
PRAGMA writable_schema = ON
UPDATE sqlite_schema SET rootpage = 3 WHERE name = 'audible_books'
