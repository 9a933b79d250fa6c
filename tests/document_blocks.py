"""Code blocks and inline code in the documents."""

import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
DOCUMENTS = sorted([*ROOT.glob("*.md"), *ROOT.glob("docs/*.md")])

# How a block is tested, by the word after its fence.
TRANSCRIPT, SOURCE, COMMANDS = "console", "cpp", "sh"
DATA = ("text", "json")

FENCED = re.compile(r"^```(\w*)\n(.*?)^```$", flags=re.S | re.M)


def blocks(text, kind):
    return [block for word, block in FENCED.findall(text) if word == kind]


def inline(text):
    """Texts between backticks, outside blocks."""
    return [" ".join(code.split()) for code in re.findall(r"`([^`]+)`", FENCED.sub("", text))]


def assert_known_blocks(document):
    """Refuses blocks that are neither tested nor data."""
    for word, block in FENCED.findall(document.read_text()):
        if word not in (TRANSCRIPT, SOURCE, COMMANDS, *DATA):
            raise SystemExit(f"{document}: unknown block type '{word}': use console, cpp or sh for "
                             f"tested blocks, text or json for data:\n{block}")
    if re.search(r"^    (\$|\./|fabscan )", FENCED.sub("", document.read_text()), flags=re.M):
        raise SystemExit(f"{document}: a command is indented; use a sh or console block")
