"""The part of Netlify that a publication talks to: it makes a site, takes deploys by digest, and serves the page."""

from __future__ import annotations

import hashlib
import json
import time

TOKEN = "token-of-the-tests"
_SITE = "site-of-the-tests"


class Netlify:
    """One account with room for one site."""

    def __init__(self) -> None:
        self.page = b""  # what the site's readers are served
        self.broken = False  # the service is down
        self.pause = 0.0  # seconds before it tells of a site, so that what is said before a publication can be seen
        self._has_site = False
        self._files: dict[str, bytes] = {}
        self._wanted = ""
        self._deploys = 0

    def answer(self, address: str, method: str, path: str, headers: dict[str, str], body: bytes) -> tuple[int, bytes] | None:
        """Status and body of what is asked of the API at the address; nothing for what is not its business."""
        if not path.startswith("/api/v1/"):
            return None
        if self.broken:
            return 503, b'{"message":"Back soon"}'
        if headers.get("Authorization") != f"Bearer {TOKEN}":
            return 401, b'{"message":"Access Denied"}'
        parts = path.split("/")[3:]
        if parts[0] == "sites" and len(parts) < 3:
            time.sleep(self.pause)
        if parts == ["sites"] and method == "POST":
            self._has_site = True
            return 201, self._site(address)
        if parts[0] == "sites" and (not self._has_site or parts[1] != _SITE):
            return 404, b'{"message":"Not Found"}'
        if parts == ["sites", _SITE, "deploys"] and method == "POST":
            return 200, self._deploy(json.loads(body)["files"]["/index.html"])
        if parts[0] == "sites":
            return 200, self._site(address)
        if parts[0] == "deploys" and method == "PUT":
            self._files[hashlib.sha1(body).hexdigest()] = body
            self.page = body
            return 200, b"{}"
        return 200, json.dumps({"id": f"deploy-{self._deploys}", "state": "ready"}).encode()

    def _site(self, address: str) -> bytes:
        return json.dumps({"id": _SITE, "custom_domain": None, "url": f"{address}/site", "ssl_url": f"{address}/site"}).encode()

    def _deploy(self, digest: str) -> bytes:
        self._deploys += 1
        self.page = self._files.get(digest, self.page)
        required = [] if digest in self._files else [digest]
        return json.dumps({"id": f"deploy-{self._deploys}", "state": "uploading", "required": required}).encode()
