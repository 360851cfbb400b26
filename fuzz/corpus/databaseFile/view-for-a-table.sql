SQL
DROP TABLE audible_books
CREATE VIEW audible_books AS SELECT 1 AS id, 'a view' AS title
PRAGMA user_version = 0
