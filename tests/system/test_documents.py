"""The documents: what they link and name is there."""
import re
import unittest
from collections import Counter
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
START = SOURCES / "README.md"
DOCUMENTS = [START, *sorted((SOURCES / "docs").glob("*.md")), SOURCES / "bench/README.md"]

_CODE = re.compile(r"^```.*?^```|^(?: {4}|\t).*?$", re.MULTILINE | re.DOTALL)
_LINK = re.compile(r"\]\(([^)\s]+)\)")
_HEADING = re.compile(r"^#+ +(.+?) *$", re.MULTILINE)
_ELSEWHERE = ("http://", "https://", "mailto:")
# A file or folder of the sources. One that stands for many has a star or brackets in it.
_PATH = re.compile(r"`([a-z]\w*/[\w./-]+)`")
_ROOTS = ("", "src", "tests")    # below which the documents name them
_ENDINGS = ("", ".h", ".cpp")    # a pair of files goes by its common name
_MADE = "build/"                 # by a build, so it need not be there


def prose(document):
    """The text without its examples."""
    return _CODE.sub("", document.read_text(encoding="utf-8"))


def links(document):
    """What it links within the sources, as "file#heading", "file" or "#heading"."""
    return [link for link in _LINK.findall(prose(document)) if not link.startswith(_ELSEWHERE)]


def target_of(document, link):
    """The file that a link means, and the heading, which may be ""."""
    name, _, heading = link.partition("#")
    return (document.parent / name).resolve() if name else document, heading


def is_there(path):
    return any((SOURCES / root / f"{path}{ending}").exists()
               for root in _ROOTS for ending in _ENDINGS)


def anchors(document):
    """The names by which its headings are linked."""
    seen = Counter()
    names = set()
    for heading in _HEADING.findall(prose(document)):
        name = re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")
        names.add(f"{name}-{seen[name]}" if seen[name] else name)
        seen[name] += 1
    return names


class Links(unittest.TestCase):
    def test_each_leads_to_a_file_and_a_heading_that_are_there(self):
        for document in DOCUMENTS:
            for link in links(document):
                with self.subTest(document=document.name, link=link):
                    file, heading = target_of(document, link)
                    self.assertTrue(file.exists())
                    if heading:
                        self.assertIn(heading, anchors(file))

    def test_every_document_can_be_reached_from_the_first_one(self):
        reached = set()
        waiting = [START]
        while waiting:
            document = waiting.pop()
            reached.add(document)
            waiting += [file for file, _ in (target_of(document, link) for link in links(document))
                        if file.suffix == ".md" and file not in reached]
        self.assertEqual(reached, set(DOCUMENTS))


class Paths(unittest.TestCase):
    def test_files_of_the_sources_that_are_named_are_there(self):
        for document in DOCUMENTS:
            for path in _PATH.findall(prose(document)):
                with self.subTest(document=document.name, path=path):
                    self.assertTrue(path.startswith(_MADE) or is_there(path))


if __name__ == "__main__":
    unittest.main()
