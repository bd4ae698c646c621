# SPDX-License-Identifier: MIT
"""The small changes that can be made to a source file, each at its place."""

import re
from dataclasses import dataclass

from tokens import closing, tokens_of

COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
OPERATORS = {"&&": "||", "||": "&&", "+": "-", "-": "+", "*": "+", "/": "*", "%": "/", "<<": ">>", ">>": "<<",
             "&": "|", "|": "&", "+=": "-=", "-=": "+=", "++": "--", "--": "++"}
WORDS = {"true": "false", "false": "true", "nullptr": None, "TRUE": "FALSE", "FALSE": "TRUE", "min": "max", "max": "min"}
NO_CALLS = {"if", "for", "while", "switch", "defined", "sizeof", "alignas"}
SYMMETRIC = {"min", "max"}  # the order of their arguments makes no difference
# What begins a statement that cannot just be left out: it declares something, or it is where control goes.
KEPT_STATEMENTS = {"return", "using", "namespace", "struct", "class", "enum", "union", "template", "typedef", "static_assert",
                   "const", "constexpr", "consteval", "constinit", "static", "inline", "extern", "friend", "auto", "case",
                   "default", "public", "private", "protected", "throw", "explicit", "else", "do", "if", "for", "while",
                   "switch", "asm", "goto", "virtual", "typename", "mutable", "operator"}


@dataclass(frozen=True)
class Change:
    file: str
    start: int  # offset of what is replaced
    end: int
    before: str
    after: str
    kind: str
    line: int
    nth: int  # of equal changes on that line, counted from 0
    code: str  # the line's text, without the space around it

    def apply(self, source):
        return source[: self.start] + self.after + source[self.end :]

    def text(self):
        return f"{self.kind}: {self.before!r} -> {self.after!r}"

    def key(self):
        return (self.file, self.code, self.before, self.after, self.nth)


def changes_of(file, source):
    """All changes of one file, by offset."""
    tokens = _without_static_asserts(tokens_of(source))
    found = []
    for finder in (_comparisons_and_operators, _constants, _arguments, _statements):
        found += finder(tokens, source)
    found.sort()
    lines = source.split("\n")
    changes, seen = [], {}
    for start, end, after, kind in found:
        before = source[start:end]
        line = source.count("\n", 0, start) + 1
        nth = seen.setdefault((line, before, after), 0)
        seen[line, before, after] += 1
        changes.append(Change(file, start, end, before, after, kind, line, nth, lines[line - 1].strip()))
    return changes


def _without_static_asserts(tokens):
    """Nor attributes: neither has an effect at run time."""
    kept, index = [], 0
    while index < len(tokens):
        text = tokens[index].text
        if text in ("static_assert", "__attribute__") and index + 1 < len(tokens):
            index = closing(tokens, index + 1) + 1
        elif text == "[" and index + 1 < len(tokens) and tokens[index + 1].text == "[":
            index = closing(tokens, index) + 1
        else:
            kept.append(tokens[index])
            index += 1
    return kept


def _spaced(token, source):
    """Formatted code has space around a binary operator and none around a template's brackets, a pointer's star."""
    return source[token.start - 1 : token.start].isspace() and source[token.end : token.end + 1].isspace()


def _comparisons_and_operators(tokens, source):
    for token in tokens:
        if token.kind != "punctuation":
            continue
        if token.text in COMPARISONS and _spaced(token, source):
            yield token.start, token.end, COMPARISONS[token.text], "swapped comparison"
        elif token.text in ("++", "--") or (token.text in OPERATORS and _spaced(token, source)):
            yield token.start, token.end, OPERATORS[token.text], "changed operator"


def _constants(tokens, source):
    for index, token in enumerate(tokens):
        if token.kind == "number":
            after = _another_number(token.text)
            if after is not None:
                yield token.start, token.end, after, "off by one"
        elif token.kind == "string" and not _goes_unseen(tokens, index):
            yield token.start, token.end, _another_text(token.text), "changed constant"
        elif token.kind == "character":
            yield token.start, token.end, "'~'" if token.text != "'~'" else "'_'", "changed constant"
        elif token.kind == "word" and WORDS.get(token.text):
            yield token.start, token.end, WORDS[token.text], "changed constant"


def _goes_unseen(tokens, index):
    """A library function's name that is not printed at once is for ErrorHelper::ShowError, which shows it nowhere."""
    printed = [token.text for token in tokens[max(index - 2, 0) : index]] in (["puts", "("], ["printf", "("])
    return tokens[index].text.startswith('"AGL_Symbolic_') and not printed


def _another_number(text):
    match = re.fullmatch(r"(0[xX][0-9a-fA-F']+|[0-9']+)([uUlLzZ]*)", text)
    if match is None:
        return None
    digits = match.group(1).replace("'", "")
    if digits[:2].lower() == "0x":
        return hex(int(digits, 16) + 1) + match.group(2)
    return str(int(digits) + 1) + match.group(2)


def _another_text(text):
    return '"~"' if text == '""' else text[:-1] + '~"'


def _arguments(tokens, source):
    """Two neighbouring arguments of a call change places."""
    for index, token in enumerate(tokens[:-1]):
        if token.text != "(" or index == 0 or tokens[index - 1].kind != "word":
            continue
        if tokens[index - 1].text in NO_CALLS or tokens[index - 1].text in SYMMETRIC:
            continue
        last = closing(tokens, index)
        if last == len(tokens):
            continue
        spans, start, depth = [], index + 1, 0
        for at in range(index + 1, last + 1):
            text = tokens[at].text if tokens[at].kind == "punctuation" else ""
            if depth == 0 and (text == "," or at == last):
                if at > start and not _declares(tokens[start:at], source):
                    spans.append((tokens[start].start, tokens[at - 1].end))
                start = at + 1
            depth += (text in ("(", "[", "{")) - (text in (")", "]", "}"))
        for (s1, e1), (s2, e2) in zip(spans, spans[1:]):
            first, between, second = source[s1:e1], source[e1:s2], source[s2:e2]
            if first != second:
                yield s1, e2, second + between + first, "swapped argument"


def _declares(argument, source):
    """Whether it is a parameter: a type and a name."""
    for left, right in zip(argument, argument[1:]):
        if left.kind == "word" and right.kind == "word" and left.text != "sizeof":
            return True
        if left.text in ("&", "*") and right.kind == "word" and source[left.end].isspace() and not _spaced(left, source):
            return True
    return False


def _statements(tokens, source):
    """A statement that is only an expression is left out."""
    begin, depth = 0, 0
    for index, token in enumerate(tokens):
        depth += (token.text == "(") - (token.text == ")")
        if depth != 0:
            continue
        if token.kind == "directive" or token.text in ("{", "}") or (token.text == ":" and _is_label(tokens[begin])):
            begin = index + 1
        elif token.text == ")" and _ends_condition(tokens, index):
            begin = index + 1
        elif token.text == ";" and token.kind == "punctuation":
            statement = tokens[begin:index]
            begin = index + 1
            if _is_expression(statement):
                yield statement[0].start, token.start, "", "dropped statement"


def _is_label(first):
    return first.text in ("case", "default", "public", "private", "protected")


def _ends_condition(tokens, index):
    depth = 0
    for at in range(index, -1, -1):
        depth += (tokens[at].text == ")") - (tokens[at].text == "(")
        if depth == 0:
            return at > 0 and tokens[at - 1].text in ("if", "for", "while", "switch")
    return False


def _is_expression(statement):
    if not statement or statement[0].text in KEPT_STATEMENTS:
        return False
    if statement[0].text in ("break", "continue"):
        return False
    texts = [token.text for token in statement]
    if texts[-1] in ("default", "delete"):
        return False
    if texts[0] in ("++", "--", "*", "("):
        return True
    if statement[0].kind != "word":
        return False
    # name, then ., ->, ::, [, ( or an assignment: no declaration, which would have a second name or a & or * there.
    at = 1
    while at + 1 < len(texts) and texts[at] in ("::", ".", "->"):
        at += 2
    if at >= len(texts):
        return False
    if texts[at] == "<":  # a template's arguments: a call only when brackets follow
        return "(" in texts and texts[0] not in ("std",)
    return texts[at] in ("(", "[", "=", "+=", "-=", "*=", "/=", "|=", "&=", "<<", "++", "--")
