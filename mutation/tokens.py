# SPDX-License-Identifier: MIT
"""C++ source text as tokens, as far as choosing places for small changes needs it."""

import re
from dataclasses import dataclass

_TOKEN = re.compile(
    r"""
      (?P<comment> //[^\n]* | /\*.*?\*/ )
    | (?P<directive> ^[ \t]*\#[ \t]*(?!define\b)[a-z]+ (?: \\\n | [^\n] )* | ^[ \t]*\#[ \t]*define[ \t]+\w+(?:\([^)]*\))? )
    | (?P<string> "(?: \\. | [^"\\\n] )*" )
    | (?P<character> '(?: \\. | [^'\\\n] )' | '\\[0-7x][0-9a-fA-F]*' )
    | (?P<number> \b\d[\w']*(?:\.\d+)? )
    | (?P<word> [A-Za-z_]\w* )
    | (?P<punctuation> <<=|>>=|->\*|\.\.\.|<=>|::|\+\+|--|->|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|\#\#|. )
    | (?P<space> \s+ | \\\n )
    """,
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int  # offset into the source

    @property
    def end(self):
        return self.start + len(self.text)


def tokens_of(source):
    """The tokens but space and comments. Directives are whole lines; of a #define only what stands before its text."""
    found = []
    position = 0
    while position < len(source):
        match = _TOKEN.match(source, position)
        if match is None:  # never: the last alternatives take any character
            raise ValueError(f"no token at offset {position}")
        kind = match.lastgroup
        if kind == "punctuation" and match.group().isspace():
            kind = "space"
        if kind not in ("space", "comment"):
            found.append(Token(kind, match.group(), position))
        position = match.end()
    return found


def closing(tokens, opening):
    """The index of the bracket that closes the one at index opening; len(tokens) when none does."""
    pairs = {"(": ")", "[": "]", "{": "}"}
    depth = 0
    for index in range(opening, len(tokens)):
        if tokens[index].kind != "punctuation":
            continue
        if tokens[index].text in pairs:
            depth += 1
        elif tokens[index].text in pairs.values():
            depth -= 1
            if depth == 0:
                return index
    return len(tokens)
