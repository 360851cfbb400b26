SQL
UPDATE goodreads_books SET user_rating = 'many', cover_data = 7, read_at = x'00ff', num_pages = 1e18, title = x'ff'
UPDATE audible_books SET listening_progress = 'all', cover_data = 'text'
