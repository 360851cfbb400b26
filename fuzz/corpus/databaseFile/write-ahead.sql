SQL
PRAGMA journal_mode = WAL
UPDATE goodreads_books SET title = 'Changed'
