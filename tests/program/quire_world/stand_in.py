"""A server on loopback that stands in for the outside services.

It answers the feed of a list of books by shelf, as the service does, until a test scripts
another answer: a status, a delay, a drip, a body cut short, a redirect. It keeps every request.

    services = StandIn()
    services.books = [FeedBook("1", "The Salt Road")]
    services.answer_shelf("read", Answer(status=503, body=b"Back soon"))
"""

from __future__ import annotations

import threading
from dataclasses import dataclass, field
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, urlsplit

from .catalogues import AudioTitle, CatalogueBook, audible, no_ebooks, open_library
from .feed import FeedBook, feed
from .netlify import Netlify

ALL_SHELVES = "#ALL#"
SERVICES = (
    "goodreads", "audibleAPI", "audibleWeb", "openLibrary", "openLibraryCovers", "appleBooks", "netlify", "update", "help")


@dataclass
class Answer:
    """How one request is answered."""

    body: bytes = b""
    status: int = 200
    type: str = "application/xml; charset=utf-8"
    headers: dict[str, str] = field(default_factory=dict)
    delay: float = 0  # seconds before the first byte
    until: threading.Event | None = None  # what the first byte waits for
    drip: float = 0  # seconds between the bytes of the body
    cut_after: int | None = None  # bytes of the body after which the connection ends
    refuse: bool = False  # the connection ends without an answer


def redirect(address: str) -> Answer:
    return Answer(status=302, headers={"Location": address})


def page(text: str = "<html><body><h1>Sign in</h1></body></html>") -> Answer:
    """A web page where a feed was asked for."""
    return Answer(text.encode(), type="text/html; charset=utf-8")


def json_answer(body: bytes) -> Answer:
    return Answer(body, type="application/json; charset=utf-8")


@dataclass(frozen=True)
class Request:
    method: str
    path: str
    query: dict[str, str]
    raw: str  # path and query as they came
    headers: dict[str, str]
    body: bytes


class StandIn:
    """Any thread may change its fields while it runs."""

    def __init__(self, books: list[FeedBook] | None = None) -> None:
        self.books: list[FeedBook] = books or []
        self.catalogue: list[CatalogueBook] = []  # what Open Library knows
        self.audio_titles: list[AudioTitle] = []  # what the audiobook catalogue knows
        self.netlify = Netlify()
        self.update = b'{"version":"0.0","build":1,"downloadPage":""}'  # what the update host tells
        self.files: dict[str, Answer] = {}  # answers by path, e.g. covers
        self._shelves: dict[str, Answer] = {}
        self._requests: list[Request] = []
        self._ending = threading.Event()
        stand_in = self

        class Handler(BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def do_GET(self) -> None:
                stand_in._serve(self)

            do_POST = do_PUT = do_GET

            def log_message(self, *_: object) -> None:
                pass

        self._server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self._server.daemon_threads = True
        threading.Thread(target=self._server.serve_forever, kwargs={"poll_interval": 0.05}, daemon=True).start()

    # What it is asked. ---------------------------------------------------------

    @property
    def address(self) -> str:
        return f"http://127.0.0.1:{self._server.server_address[1]}"

    def endpoints(self) -> dict[str, str]:
        """Every outside service at this server, so that no test reaches the world."""
        return {service: self.address for service in SERVICES}

    @property
    def requests(self) -> list[Request]:
        return list(self._requests)

    @property
    def feed_requests(self) -> list[Request]:
        return [request for request in self.requests if request.path.startswith("/review/list_rss/")]

    @property
    def asked_shelves(self) -> list[str]:
        """The shelves of the feed requests so far, in order."""
        return [request.query.get("shelf", "") for request in self.feed_requests]

    # What it answers. ------------------------------------------------------------

    def answer_shelf(self, shelf: str, answer: Answer) -> None:
        self._shelves[shelf] = answer

    def answer_every_shelf(self, answer: Answer) -> None:
        for shelf in (ALL_SHELVES, "currently-reading", "read", "to-read", "did-not-finish"):
            self.answer_shelf(shelf, answer)

    def answer_as_usual(self) -> None:
        self._shelves.clear()

    def _answer(self, request: Request) -> Answer:
        if request.path in self.files:
            return self.files[request.path]
        published = self.netlify.answer(self.address, request.method, request.path, request.headers, request.body)
        if published:
            return Answer(published[1], status=published[0], type="application/json; charset=utf-8")
        if request.path == "/site/index.html":
            return Answer(self.netlify.page, type="text/html; charset=UTF-8")
        if request.path == "/quire/version.json":
            return json_answer(self.update)
        if request.path == "/search.json" and "q" in request.query:
            return json_answer(open_library(self.catalogue, request.query["q"], int(request.query["limit"])))
        if request.path == "/search.json":  # a search for a cover
            return json_answer(open_library([], "", 0))
        if request.path == "/search":
            return json_answer(no_ebooks())
        if request.path == "/1.0/catalog/products":
            return json_answer(audible(self.audio_titles, request.query["keywords"], int(request.query["num_results"])))
        if request.path.startswith("/review/list_rss/"):
            shelf = request.query.get("shelf", ALL_SHELVES)
            if shelf in self._shelves:
                return self._shelves[shelf]
            limit = int(request.query.get("per_page", "100"))
            books = [book for book in self.books if shelf in (ALL_SHELVES, book.shelf)]
            return Answer(feed(books[:limit], f"bookshelf: {shelf}"))
        return Answer(b"not here", status=404, type="text/plain")

    def _serve(self, handler: BaseHTTPRequestHandler) -> None:
        parts = urlsplit(handler.path)
        query = {key: values[-1] for key, values in parse_qs(parts.query, keep_blank_values=True).items()}
        body = handler.rfile.read(int(handler.headers.get("Content-Length", "0")))
        request = Request(handler.command, parts.path, query, handler.path, dict(handler.headers), body)
        self._requests.append(request)
        answer = self._answer(request)
        self._ending.wait(answer.delay)
        while answer.until and not answer.until.wait(0.05) and not self._ending.is_set():
            pass
        try:
            if answer.refuse:
                handler.close_connection = True
                return
            handler.send_response(answer.status)
            headers = {"Content-Type": answer.type, "Content-Length": str(len(answer.body))} | answer.headers
            for name, value in headers.items():
                handler.send_header(name, value)
            handler.end_headers()
            self._write_body(handler, answer)
        except OSError:
            handler.close_connection = True  # the other side went away

    def _write_body(self, handler: BaseHTTPRequestHandler, answer: Answer) -> None:
        body = answer.body if answer.cut_after is None else answer.body[:answer.cut_after]
        if not answer.drip:
            handler.wfile.write(body)
        else:
            for byte in body:
                if self._ending.wait(answer.drip):
                    break
                handler.wfile.write(bytes([byte]))
                handler.wfile.flush()
        if answer.cut_after is not None:
            handler.close_connection = True

    def stop(self) -> None:
        self._ending.set()
        self._server.shutdown()
        self._server.server_close()
