"""Judges published pages with an HTML parser that follows the standard.

usage: judge_page.py PAGE EXPECTED...

EXPECTED is JSON: the texts of the library in the order in which the page has
them, as {"titles": [...], "summaries": [...]}. Prints a line for each thing
that is wrong and ends with status 1 when there was one.

Wrong is: an element or an attribute that no page has; a link that leads
anywhere but to the web or within the page; a text that is not the library's,
character for character; a document that is not valid. Characters that HTML has no
place for, such as U+0001, make a document invalid and are passed on all the same:
they are no markup, and the text is the reader's.
"""

import json
import re
import sys
from pathlib import Path

import html5lib

ELEMENTS = {
    "html": {"lang"}, "head": set(), "meta": {"charset", "name", "content"}, "title": set(), "style": set(),
    "body": set(), "h1": set(), "h2": {"id"}, "h3": set(), "p": {"class"}, "section": {"class"}, "strong": set(),
    "ol": set(), "li": set(), "div": {"class"}, "nav": {"class"}, "a": {"href"}, "article": {"class"},
}
CLASSES = {"updated", "blurb", "rating-system", "stats", "stat", "stat-value", "stat-label", "quick-nav", "book",
           "meta", "rating", "date", "link", "summary"}
# Of a character as such, not of the markup round it.
HARMLESS_ERRORS = {"invalid-codepoint", "invalid-codepoint-in-body"}


def as_parsed(text: str) -> str:
    """What a parser makes of a text that holds no markup."""
    return text.replace("\r\n", "\n").replace("\r", "\n").replace("\0", "")


def name_of(element) -> str:
    return element.tag.rsplit("}", 1)[-1] if isinstance(element.tag, str) else "comment"


def text_of(element) -> str:
    return "".join(element.itertext())


def judge(page: bytes, expected: dict) -> list[str]:
    parser = html5lib.HTMLParser(namespaceHTMLElements=False)
    tree = parser.parse(page, transport_encoding="utf-8")
    wrong = [f"not valid: {code} at {place}" for place, code, _ in parser.errors if code not in HARMLESS_ERRORS]
    for element in tree.iter():
        name = name_of(element)
        if name not in ELEMENTS:
            wrong.append(f"an element of its own: {name}")
            continue
        for attribute, value in element.attrib.items():
            if attribute not in ELEMENTS[name]:
                wrong.append(f"an attribute of its own: {name} {attribute}={value!r}")
            elif attribute == "class" and value not in CLASSES:
                wrong.append(f"a class of its own: {value!r}")
            elif attribute == "href" and not re.match(r"(?i)https?://|#[a-z-]+$", value):
                wrong.append(f"a link to {value!r}")
    titles = [text_of(heading) for heading in tree.iter("h3")]
    summaries = [text_of(paragraph) for paragraph in tree.iter("p") if paragraph.get("class") == "summary"]
    for words, found in (("titles", titles), ("summaries", summaries)):
        wanted = [as_parsed(text) for text in expected[words]]
        if len(found) != len(wanted):
            wrong.append(f"{len(found)} {words} and not {len(wanted)}")
        wrong += [f"{words}: {a!r} and not {b!r}" for a, b in zip(found, wanted) if a != b]
    return wrong


def main() -> int:
    findings = 0
    for page, expected in zip(sys.argv[1::2], sys.argv[2::2], strict=True):
        for finding in judge(Path(page).read_bytes(), json.loads(Path(expected).read_text("utf-8"))):
            print(f"{Path(page).name}: {finding}"[:500])
            findings += 1
    print(f"{findings} findings in {len(sys.argv[1::2])} pages")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
