SQL
CREATE TRIGGER hostile AFTER INSERT ON settings BEGIN UPDATE library_metadata SET generation = generation + 1; END
