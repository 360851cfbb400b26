"""Answers of the catalogues, written as the services write them."""

from __future__ import annotations

import json
from collections.abc import Iterable
from dataclasses import dataclass


@dataclass
class CatalogueBook:
    """A book that Open Library knows."""

    work: str
    title: str
    author: str = "Ada Lindqvist"
    isbn: str = "9780000000019"
    pages: int | None = 312
    year: int | None = 1999
    cover: int | None = None

    def document(self) -> dict:
        known = {
            "key": f"/works/{self.work}", "title": self.title, "author_name": [self.author], "isbn": [self.isbn],
            "number_of_pages_median": self.pages, "first_publish_year": self.year, "cover_i": self.cover}
        return {key: value for key, value in known.items() if value is not None}


@dataclass
class AudioTitle:
    """A product of the audiobook catalogue."""

    asin: str
    title: str
    author: str = "Ada Lindqvist"
    narrator: str = "Piet Aalders"
    series: str | None = None
    number: str | None = None
    released: str = "2019-05-07"
    cover: str | None = None
    summary: str = ""

    def product(self) -> dict:
        known = {
            "asin": self.asin, "title": self.title, "authors": [{"name": self.author}],
            "narrators": [{"name": self.narrator}], "release_date": self.released, "publisher_summary": self.summary,
            "series": [{"title": self.series, "sequence": self.number}] if self.series else None,
            "product_images": {"500": self.cover} if self.cover else None}
        return {key: value for key, value in known.items() if value is not None}


def _matching(titles: Iterable, query: str, limit: int) -> list:
    words = query.casefold().split()
    found = [title for title in titles if all(word in f"{title.title} {title.author}".casefold() for word in words)]
    return found[:limit]


def open_library(books: Iterable[CatalogueBook], query: str, limit: int) -> bytes:
    found = [book.document() for book in _matching(books, query, limit)]
    return json.dumps({"numFound": len(found), "docs": found}).encode()


def audible(titles: Iterable[AudioTitle], query: str, limit: int) -> bytes:
    return json.dumps({"products": [title.product() for title in _matching(titles, query, limit)]}).encode()


def no_ebooks() -> bytes:
    return json.dumps({"resultCount": 0, "results": []}).encode()
