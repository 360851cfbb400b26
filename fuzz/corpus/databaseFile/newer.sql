SQL
PRAGMA user_version = 99
