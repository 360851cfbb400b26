SQL
UPDATE goodreads_books SET num_pages = 1e300
