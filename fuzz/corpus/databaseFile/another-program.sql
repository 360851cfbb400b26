SQL
DROP TABLE goodreads_books
CREATE TABLE goodreads_books (id INTEGER PRIMARY KEY, title)
INSERT INTO goodreads_books VALUES (1, 'kept')
PRAGMA user_version = 0
