SQL
DROP TABLE library_metadata
DROP TABLE settings
DROP TABLE book_tags
