SQL
DELETE FROM library_metadata
