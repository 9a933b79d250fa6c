"""The mutants of one C++ source: small faults, each a text change at one position.

The text is split into tokens, not parsed: it is formatted by clang-format, so a binary operator has
blanks on both sides and a template bracket has none. Meaningless mutants do not compile.
"""

import dataclasses
import itertools
import re

TOKEN = re.compile(r'''
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>(?m:^)[ ]*\#[ ]*(?:define[ ]+\w+(?:\([\w, ]*\))?|[a-z]+[^\n]*))
  | (?P<string>R"(?P<delimiter>\w*)\(.*?\)(?P=delimiter)"|"(?:\\.|[^"\\\n])*")
  | (?P<char>'(?:\\.|[^'\\\n])+')
  | (?P<number>\d[\w']*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<operator><<=|>>=|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||::|\+=|-=|\|=|&=|\S)
''', re.VERBOSE | re.DOTALL)

RELATIONS = {"==": ["!="], "!=": ["=="], "<": ["<=", ">"], ">": [">=", "<"],
             "<=": ["<"], ">=": [">"]}
SWAPPED = {"&&": "||", "||": "&&", "+": "-", "-": "+", "*": "/", "/": "*", "%": "/",
           "<<": ">>", ">>": "<<", "&": "|", "|": "&", "++": "--", "--": "++",
           "+=": "-=", "-=": "+=", "<<=": ">>=", ">>=": "<<=", "|=": "&=", "&=": "|="}
OPENING = {"(": ")", "[": "]", "{": "}"}
BLOCK, SCOPE, LIST = "block", "scope", "list"


@dataclasses.dataclass(frozen=True)
class Mutant:
    kind: str    # literal, field, condition, order, deletion, combination, limit or start
    place: str   # the function or table that contains it
    begin: int
    end: int
    text: str    # replaces the text between `begin` and `end`

    def applied(self, source):
        return source[:self.begin] + self.text + source[self.end:]

    def line(self, source):
        return source.count("\n", 0, self.begin) + 1

    def name(self, source):
        """Identifies the change by its lines before and after, independent of the position."""
        first = source.rfind("\n", 0, self.begin) + 1
        last = source.find("\n", self.end)
        def squeezed(text):
            return " ".join(text.split())
        before = squeezed(source[first:last])
        after = squeezed(source[first:self.begin] + self.text + source[self.end:last])
        return f"{self.place} | {self.kind} | {before} => {after}".rstrip()


class Source:
    def __init__(self, text):
        self.text = text
        matches = [m for m in TOKEN.finditer(text) if m.lastgroup != "comment"]
        self.kinds = ["delimited" if m.lastgroup == "delimiter" else m.lastgroup for m in matches]
        self.kinds = ["string" if k == "delimited" else k for k in self.kinds]
        self.words = [m.group() for m in matches]
        self.begins = [m.start() for m in matches]
        self.ends = [m.end() for m in matches]
        self.partner = {}
        self.braces = {}    # index of "{" -> BLOCK, SCOPE or LIST
        self.places = []    # (begin, end, name)
        self._match_brackets()
        for i, word in enumerate(self.words):
            if word == "{" and i in self.partner: self._classify(i)

    def _match_brackets(self):
        open_brackets = []
        for i, word in enumerate(self.words):
            if self.kinds[i] != "operator": continue
            if word in OPENING:
                open_brackets.append(i)
            elif word in OPENING.values():
                if not open_brackets: raise ValueError(f"bracket without partner: {word}")
                first = open_brackets.pop()
                self.partner[first], self.partner[i] = i, first

    def _head(self, brace):
        """The indices of the tokens before a brace, back to the previous statement."""
        i = brace - 1
        head = []
        while i >= 0 and self.words[i] not in (";", "{", "}") and self.kinds[i] != "directive":
            head.append(i)
            i = self.partner[i] - 1 if self.words[i] in (")", "]") else i - 1
        return head

    def _classify(self, brace):
        before = self.words[brace - 1] if brace else ""
        head = self._head(brace)
        words = [self.words[i] for i in head]
        name = ""
        if words and words[-1] in ("namespace", "class", "struct", "enum", "template") and \
                ")" not in words:
            kind = SCOPE
        elif "=" in words and ")" not in words[:words.index("=")] and before != "]":
            kind = LIST
            at = head[words.index("=")] - 1
            if self.words[at] == "]": at = self.partner[at] - 1
            name = self.words[at]
        elif before in ("=", ",", "(", "{", "return", "") or \
                (before == ")" and False):
            kind = LIST
        elif before in ("]", "else", "do", "try") or ")" in words:
            kind = BLOCK
            # The parameters of a function come last in its head, except for an initialiser list.
            for i in head:
                if self.words[i] != ")": continue
                at = self.partner[i] - 1
                if self.kinds[at] == "word" and self.words[at] not in (
                        "if", "for", "while", "switch", "catch", "noexcept", "constexpr"):
                    name = self.words[at]
            if "[" in words or before == "]": name = ""
        elif self.kinds[brace - 1] == "word" or before in (">",):
            kind = LIST
        else:
            kind = SCOPE
        self.braces[brace] = kind
        if name: self.places.append((self.begins[brace], self.ends[self.partner[brace]], name))

    def place(self, position):
        inner = [(end - begin, name) for begin, end, name in self.places if begin <= position < end]
        # For a function, not for the list in it.
        return max(inner)[1] if inner else "file"

    # ---------- Parts ----------

    def statements(self, brace):
        """(first, last) of each statement of a block."""
        i, close = brace + 1, self.partner[brace]
        first = i
        while i < close:
            word = self.words[i]
            if self.kinds[i] == "operator" and word in OPENING:
                last = self.partner[i]
                block = self.braces.get(i) == BLOCK
                i = last + 1
                following = self.words[i] if i < close else ""
                if block and following not in ("else", "while", ")", ";", ",", "(", "catch", "."):
                    yield first, last
                    first = i
                continue
            if word == ";":
                yield first, i
                first = i + 1
            i += 1

    def rows(self, brace):
        i, close = brace + 1, self.partner[brace]
        first = i
        while i < close:
            if self.kinds[i] == "operator" and self.words[i] in OPENING:
                i = self.partner[i] + 1
                continue
            if self.words[i] == ",":
                yield first, i - 1
                first = i + 1
            i += 1
        if first < close: yield first, close - 1

    def operand(self, at, step, stops):
        """The index of the last token of the operand next to the operator `at`."""
        i = at + step
        last = i
        while 0 <= i < len(self.words):
            word = self.words[i]
            if self.kinds[i] == "operator":
                bracket = word in OPENING if step > 0 else word in OPENING.values()
                if bracket:
                    last = i = self.partner[i]
                    i += step
                    continue
                if word in OPENING or word in OPENING.values(): break
                if word in (";", ",", "?", ":", "=") or word in stops: break
            elif word == "return" or self.kinds[i] == "directive":
                break
            last = i
            i += step
        return last


def changed_string(word):
    """One character replaced, and the last one removed."""
    begin, end = word.index('"') + 1, len(word) - 1
    if word.startswith("R"):
        begin, end = word.index("(") + 1, word.rindex(")")
    body = word[begin:end]
    if not body: return
    letters = [i for i, c in enumerate(body) if (c.isalnum() or c == " ") and
               (i == 0 or body[i - 1] != "\\")]
    if letters:
        i = letters[len(letters) // 2]
        other = "X" if body[i] != "X" else "Y"
        yield word[:begin] + body[:i] + other + body[i + 1:] + word[end:]
    if len(body) > 1 and body[-2] != "\\":
        yield word[:begin] + body[:-1] + word[end:]


def changed_number(word):
    match = re.fullmatch(r"(0[xX][0-9a-fA-F']+|\d[\d']*)([uUlL]*)", word)
    if not match: return
    digits = match.group(1).replace("'", "")
    value = int(digits, 0) if digits != "0" * len(digits) else 0
    for other in (value + 1, value - 1):
        if other < 0: continue
        yield (hex(other) if digits[:2] in ("0x", "0X") else str(other)) + match.group(2)


def changed_char(word):
    body = word[1:-1]
    if body == "\\0": return ["'1'"]
    if body == "\\n": return ["' '"]
    if len(body) == 1 and body not in "\\'" and body != "[": return [f"'{chr(ord(body) + 1)}'"]
    return []


def mutants(text):
    """All mutants of a source, by position, without duplicates."""
    source = Source(text)
    seen = set()
    for mutant in sorted(_all(source), key=lambda m: (m.begin, m.end, m.text)):
        if text[mutant.begin:mutant.end] == mutant.text: continue
        key = (mutant.begin, mutant.end, mutant.text)
        if key in seen or _in_assertion(source, mutant.begin): continue
        seen.add(key)
        yield mutant


def _in_assertion(source, position):
    """static_assert has no effect at run time."""
    start = max(source.text.rfind(c, 0, position) for c in ";}")
    return source.text[start + 1:position + 13].lstrip().startswith("static_assert")


def _all(source):
    for i, kind in enumerate(source.kinds):
        def change(what, text, first=i, last=i):
            begin, end = source.begins[first], source.ends[last]
            return Mutant(what, source.place(begin), begin, end, text)
        word = source.words[i]
        if kind == "string":
            for other in changed_string(word): yield change("literal", other)
        elif kind == "number":
            for other in changed_number(word): yield change("literal", other)
        elif kind == "char":
            for other in changed_char(word): yield change("literal", other)
        elif kind == "word":
            if word in ("true", "false"):
                yield change("literal", "false" if word == "true" else "true")
            yield from _conditions(source, i, change)
        elif kind == "operator":
            yield from _operators(source, i, change)
    yield from _fields(source)
    yield from _calls(source)
    yield from _combinations(source)
    yield from _limits(source)
    yield from _starts(source)
    for brace, kind in source.braces.items():
        if kind == BLOCK: yield from _sequence(source, list(source.statements(brace)), "")
        if kind == LIST: yield from _sequence(source, list(source.rows(brace)), ",")


def _conditions(source, i, change):
    if source.words[i] not in ("if", "while"): return
    first = i + 1
    if source.words[first] == "constexpr": first += 1
    if source.words[first] != "(": return
    last = source.partner[first]
    condition = source.text[source.ends[first]:source.begins[last]]
    yield change("condition", f"(!({condition}))", first, last)


def _operators(source, i, change):
    word, text = source.words[i], source.text
    spaced = text[source.begins[i] - 1] in " \n" and text[source.ends[i]:source.ends[i] + 1] in (
        " ", "\n")
    if word in RELATIONS and spaced:
        for other in RELATIONS[word]: yield change("condition", other)
    elif word in ("++", "--") or word in SWAPPED and spaced:
        yield change("condition", SWAPPED[word])
    if word in ("&&", "||") and spaced:
        stops = ("&&", "||") if word == "&&" else ("||",)
        yield change("condition", "", source.operand(i, -1, stops), i)
        yield change("condition", "", i, source.operand(i, 1, stops))
    elif word == "!" and not spaced:
        yield change("condition", "")
    elif word == "~":
        yield change("condition", "")
    elif word == "?":
        first = source.operand(i, -1, ())
        condition = text[source.begins[first]:source.ends[i - 1]]
        yield change("condition", f"!({condition})", first, i - 1)


def _following(names, name, count=2):
    """The next different names, in the order of the file."""
    distinct = list(dict.fromkeys(names))
    at = distinct.index(name)
    return [n for n in distinct[at + 1:] + distinct[:at] if n != name][:count]


def _fields(source):
    """Other members, queries and constants of the same file."""
    families = {}
    for i, word in enumerate(source.words):
        if source.kinds[i] != "word": continue
        before = source.words[i - 1] if i else ""
        after = source.words[i + 1] if i + 1 < len(source.words) else ""
        family = None
        if before in (".", "->"):
            if after != "(":
                family = "member"
            elif re.match(r"[iI]s[A-Z]|[gG]et[A-Z]", word):
                family = word[:2].lower()
        elif re.fullmatch(r"k[A-Z]\w*", word) and after not in ("=", "[", "{"):
            family = "constant"
        elif re.fullmatch(r"IB_[A-Z_]+", word):
            family = "enumerator"
        if family: families.setdefault(family, []).append(i)
    for family, indices in families.items():
        names = [source.words[i] for i in indices]
        for i in indices:
            begin, end = source.begins[i], source.ends[i]
            for other in _following(names, source.words[i], 1 if family == "constant" else 2):
                yield Mutant("field", source.place(begin), begin, end, other)
    yield from _row_values(source)


def _row_values(source):
    """A row with its own text and the value of the adjacent row."""
    rows = list(re.finditer(r"(?m)^[ ]*FABSCAN_[A-Z]+\((?:(\w+), )?([\w.\[\]]+)\),$", source.text))
    for row, other in zip(rows, rows[1:] + rows[:1]):
        if row.group(1) != other.group(1):
            other = next((r for r in reversed(rows) if r.group(1) == row.group(1) and r != row), None)
        if other is None: continue
        mine, others = (re.search(r"\w+$", r.group(2)) for r in (row, other))
        if not mine or not others or mine.group() == others.group(): continue
        begin, end = row.span()
        yield Mutant("field", source.place(begin), begin, end,
                     f"#define {mine.group()} {others.group()}\n{row.group()}\n"
                     f"#undef {mine.group()}")


def _calls(source):
    """One call of a chain removed; two calls of a chain swapped."""
    for i, word in enumerate(source.words):
        if word != "." or source.words[i + 2:i + 3] != ["("]: continue
        last = source.partner[i + 2]
        begin, end = source.begins[i], source.ends[last]
        place = source.place(begin)
        if source.words[i - 1] == ")": yield Mutant("deletion", place, begin, end, "")
        if source.words[last + 1] == "." and source.words[last + 3:last + 4] == ["("]:
            further = source.ends[source.partner[last + 3]]
            yield Mutant("order", place, begin, further,
                         source.text[end:further].lstrip() + source.text[begin:end])


# ---------- Conditions combined with others ----------

NODE_CONDITIONS = {"IsSwitch": lambda world: world["type"] == "switch",
                   "IsRouter": lambda world: world["type"] == "router",
                   "IsNotSpecial": lambda world: not world["special"]}
MANY_PORTS = 64
WORLDS = [dict(zip(("type", "special", "many", "own"), values)) for values in itertools.product(
    ("switch", "router", "adapter"), (False, True), (False, True), (False, True))]


def _combinations(source):
    """A condition that holds in more cases, or in fewer: the others decide about those."""
    yield from _combined_gates(source)
    yield from _combined_branches(source)
    for i, word in enumerate(source.words):
        if not re.match(r"is[A-Z]", word) or source.words[i - 2:i] != ["node", "."]: continue
        first = i - 3 if source.words[i - 3] == "!" else i - 2
        begin, end = source.begins[first], source.ends[source.partner[i + 1]]
        for addition in (f"|| node.numPorts > {MANY_PORTS}", f"&& node.numPorts <= {MANY_PORTS}"):
            yield Mutant("combination", source.place(begin), begin, end,
                         f"({source.text[begin:end]} {addition})")


def _combined_gates(source):
    """`Unless(condition, "line")` with another condition of nodes. Only where it matters: what the
    conditions before it in the statement let pass decides that."""
    passed = []
    for i, word in enumerate(source.words):
        if word in (";", "{", "}"): passed = []
        if word != "Unless" or source.words[i + 1] != "(": continue
        end = source.partner[i + 1]
        commas = [k for k in range(i + 2, end)
                  if source.words[k] == "," and source.kinds[k + 1] == "string"]
        if not commas: continue
        begin, end = source.begins[i + 2], source.ends[commas[0] - 1]
        gate = source.text[begin:end]
        holds = NODE_CONDITIONS.get(gate, lambda world: world["own"])
        worlds = [world for world in WORLDS if all(earlier(world) for earlier in passed)]
        passed.append(holds)
        others = {f"{name}(of_, each_)": condition for name, condition in NODE_CONDITIONS.items()}
        others[f"each_.numPorts > {MANY_PORTS}"] = lambda world: world["many"]
        for (other, condition), negated, widened in itertools.product(
                others.items(), (False, True), (False, True)):
            def combined(world):
                added = condition(world) != negated
                return holds(world) or added if widened else holds(world) and added
            if all(combined(world) == holds(world) for world in worlds): continue
            yield Mutant("combination", source.place(begin), begin, end,
                         "[&](auto& of_, auto& each_) { return (%s)(of_, each_) %s %s(%s); }" % (
                             gate, "||" if widened else "&&", "!" if negated else "", other))


def _combined_branches(source):
    """`if (condition)` with that of the next branch of the same function."""
    branches = []
    for i, word in enumerate(source.words):
        if word != "if" or source.words[i + 1] != "(": continue
        begin, end = source.ends[i + 1], source.begins[source.partner[i + 1]]
        branches.append((source.place(begin), begin, end, source.text[begin:end]))
    for (place, begin, end, condition), following in zip(branches, branches[1:]):
        if following[0] != place: continue
        for other in (following[3], f"!({following[3]})"):
            for operator in ("&&", "||"):
                yield Mutant("combination", place, begin, end,
                             f"({condition}) {operator} ({other})")


# ---------- Numbers beside limits ----------

NUMBERS = r"\w*(?:port|number|index)"


def _limits(source):
    """The largest value of a field, and large numbers of ports and sets, changed."""
    for row in re.finditer(r"(?m)^[ ]*FABSCAN_[A-Z]+\((?:\w+, )?([\w.\[\]]+)\),$", source.text):
        member = re.search(r"\w+(?=(?:\[\d+\])?$)", row.group(1)).group()
        path, element = row.group(1).split(member)[0], row.group(1).split(member)[-1]
        value = f"r.{path}{member}{element}"
        begin, end = row.span()
        if element: continue
        yield Mutant("limit", source.place(begin), begin, end,
                     f"#define {member} {member} == static_cast<decltype({value})>(~0ULL) ? 0 "
                     f": {value}\n{row.group()}\n#undef {member}")
    for i, word in enumerate(source.words):
        if not re.fullmatch(NUMBERS, word) or source.kinds[i] != "word": continue
        first = i - 2 if source.words[i - 1] in (".", "->") else i
        if source.words[first - 1] not in ("(", ",", "{"): continue
        if source.words[i + 1] not in (")", ",", "}"): continue
        begin, end = source.begins[first], source.ends[i]
        value = source.text[begin:end]
        for limit in (f"({value} > 127) ? 127 : {value}", f"({value} == 255) ? 0 : {value}"):
            yield Mutant("limit", source.place(begin), begin, end,
                         f"static_cast<std::decay_t<decltype({value})>>({limit})")
    for i, word in enumerate(source.words):
        if word not in ("true", "false"): continue
        begin, end = source.begins[i], source.ends[i]
        before = source.text[source.text.rfind("\n}", 0, begin) + 1:begin]
        if not re.search(r"\bnumber\b", before): continue
        yield Mutant("limit", source.place(begin), begin, end,
                     f"(number {'!=' if word == 'true' else '=='} 255)")


# ---------- Starts of loops ----------

SKIPPING = """[](auto&& all_) {
      struct Rest_ {
        decltype(all_.begin()) begin_;
        decltype(all_.end()) end_;
        auto begin() const { return begin_; }
        auto end() const { return end_; }
      };
      auto next_ = all_.begin();
      if (next_ != all_.end()) ++next_;
      return Rest_{%s, all_.end()};
    }(%s)"""


def _starts(source):
    """The first element left out, always or where there are others; a number that is counted from,
    likewise."""
    for i, word in enumerate(source.words):
        if word != "for": continue
        last = source.partner[i + 1]
        colons = [k for k in range(i + 2, last) if source.words[k] == ":"]
        semicolons = [k for k in range(i + 2, last) if source.words[k] == ";"]
        if colons and not semicolons:
            begin, end = source.begins[colons[0] + 1], source.begins[last]
            for start in ("next_", "next_ != all_.end() ? next_ : all_.begin()"):
                yield Mutant("start", source.place(begin), begin, end,
                             SKIPPING % (start, source.text[begin:end]))
        elif semicolons and semicolons[0] > i + 2:
            begin = end = source.begins[semicolons[0]]
            yield Mutant("start", source.place(begin), begin, end, " + 1")
    for match in re.finditer(r"(?<== )(\w+)\.begin\(\)(?=;)", source.text):
        begin, end = match.span()
        yield Mutant("start", source.place(begin), begin, end,
                     f"{match[1]}.size() > 1 ? std::next({match[0]}) : {match[0]}")


def _sequence(source, pieces, separator):
    """Each part removed, and each swapped with the next."""
    def text(piece):
        return source.text[source.begins[piece[0]]:source.ends[piece[1]]]

    def starts(piece, *words):
        return source.words[piece[0]] in words
    for piece in pieces:
        if starts(piece, "using", "static_assert"): continue
        begin, end = source.begins[piece[0]], source.ends[piece[1]]
        if separator and source.words[piece[1] + 1] == separator: end = source.ends[piece[1] + 1]
        yield Mutant("deletion", source.place(begin), begin, end, "")
    for piece, following in zip(pieces, pieces[1:]):
        # The order of constants in a function, and of cases in a switch, does not matter.
        if not separator and (starts(piece, "const", "constexpr", "using", "SourceWriter") and
                              starts(following, "const", "constexpr", "using")): continue
        if starts(piece, "case", "default") and starts(following, "case", "default"): continue
        begin, end = source.begins[piece[0]], source.ends[following[1]]
        between = source.text[source.ends[piece[1]]:source.begins[following[0]]]
        yield Mutant("order", source.place(begin), begin, end,
                     text(following) + between + text(piece))
