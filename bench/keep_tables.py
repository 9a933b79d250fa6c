"""keep_tables.py NAME DOCUMENT: copies standard input to standard output, and its Markdown tables to
DOCUMENT, in place of the lines between <!-- NAME --> and <!-- end of NAME -->.
"""

import pathlib
import sys


def tables_of(lines):
    """The lines of tables, with an empty line between two of them."""
    kept = []
    for line in lines:
        if line.startswith("|"):
            kept.append(line)
        elif kept and kept[-1] != "\n":
            kept.append("\n")
    while kept and kept[-1] == "\n":
        kept.pop()
    return kept


def main():
    name, document = sys.argv[1], pathlib.Path(sys.argv[2])
    lines = []
    for line in sys.stdin:
        sys.stdout.write(line)
        sys.stdout.flush()
        lines.append(line)
    tables = tables_of(lines)
    if not tables:
        sys.exit(f"keep_tables.py: {name} printed no table; {document} stays as it is")
    text = document.read_text()
    begin, end = f"<!-- {name} -->\n", f"<!-- end of {name} -->\n"
    before, found, rest = text.partition(begin)
    _, closed, after = rest.partition(end)
    if not found or not closed:
        sys.exit(f"keep_tables.py: {document} has no place for {name}; add {begin}{end}")
    document.write_text(before + begin + "".join(tables) + end + after)


if __name__ == "__main__":
    main()
