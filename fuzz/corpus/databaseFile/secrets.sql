SQL
INSERT OR REPLACE INTO settings VALUES ('netlifyToken', 'an old token'), ('goodreadsRssKey', x'00')
