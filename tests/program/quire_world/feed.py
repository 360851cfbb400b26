"""Goodreads feeds, written as the service writes them."""

from __future__ import annotations

from collections.abc import Iterable
from dataclasses import dataclass
from xml.sax.saxutils import escape

SHELVES = ("currently-reading", "read", "to-read", "did-not-finish")


@dataclass
class FeedBook:
    """One item; every text is what a reader would see, escaping is done here."""

    id: str
    title: str
    author: str = "Ada Lindqvist"
    shelf: str = "read"
    rating: int | str = 0
    average: str = "3.92"
    pages: int | str = 312
    isbn: str = ""
    description: str = ""
    published: str = "2019"
    read_at: str = ""
    added: str = "Sat, 14 Mar 2026 09:21:07 -0700"
    cover: str = ""

    @property
    def shelves(self) -> str:
        """"read" is what a book is that stands on no other shelf."""
        return "" if self.shelf == "read" else self.shelf

    def item(self) -> str:
        def plain(name: str, value: object) -> str:
            return f"      <{name}>{escape(str(value))}</{name}>"

        def cdata(name: str, value: object) -> str:
            return f"      <{name}><![CDATA[{value}]]></{name}>"

        return "\n".join([
            "    <item>",
            cdata("guid", f"https://example.invalid/review/{self.id}"),
            plain("title", self.title),
            cdata("link", f"https://example.invalid/review/{self.id}"),
            plain("book_id", self.id),
            cdata("book_image_url", self.cover),
            cdata("book_large_image_url", self.cover),
            cdata("book_description", self.description),
            f'      <book id="{escape(self.id)}">\n        <num_pages>{escape(str(self.pages))}</num_pages>\n      </book>',
            plain("author_name", self.author),
            plain("isbn", self.isbn),
            plain("user_rating", self.rating),
            cdata("user_read_at", self.read_at),
            cdata("user_date_added", self.added),
            plain("user_shelves", self.shelves),
            plain("average_rating", self.average),
            plain("book_published", self.published),
            "    </item>",
        ])


def feed(books: Iterable[FeedBook], title: str = "bookshelf") -> bytes:
    items = "\n".join(book.item() for book in books)
    return (
        '<?xml version="1.0" encoding="UTF-8"?>\n<rss version="2.0">\n  <channel>\n'
        f"    <title>{escape(title)}</title>\n{items}\n  </channel>\n</rss>\n"
    ).encode()
