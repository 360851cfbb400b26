SQL
PRAGMA user_version = -1
