"""Finds links in the documents that lead nowhere: to files that do not exist, or to headings that are not there.

    links.py FOLDER
"""

import re
import sys
from pathlib import Path

LINK = re.compile(r"\]\(([^)\s]+)\)")
FENCED = re.compile(r"^```.*?^```", re.MULTILINE | re.DOTALL)


def anchors(document):
    """The names by which the headings of a document can be linked."""
    headings = re.findall(r"^#+ (.+)$", FENCED.sub("", document.read_text(encoding="utf-8")), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def broken_links(root):
    for document in sorted([*root.glob("*.md"), *root.glob("docs/**/*.md")]):
        for link in LINK.findall(FENCED.sub("", document.read_text(encoding="utf-8"))):
            if "://" in link:
                continue
            path, _, anchor = link.partition("#")
            target = document.parent / path if path else document
            if not target.exists() or (anchor and anchor not in anchors(target)):
                yield f"{document.relative_to(root)}: {link}"


def main():
    broken = list(broken_links(Path(sys.argv[1])))
    print("\n".join(broken) or "every link leads somewhere")
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main())
