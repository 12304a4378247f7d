"""Lists the small changes that can be made to a C++ source: what scripts/mutate tries.

The source is split into tokens only. clang-format makes that enough: a binary operator has white space on both sides, a
template bracket, reference or pointer has not. A change that is not C++ after all does not compile and does not count.
"""

import re
from typing import NamedTuple


class Mutation(NamedTuple):
    """Replaces the text of a source from `begin` to `end` with `text`."""

    begin: int
    end: int
    text: str


class Token(NamedTuple):
    kind: str  # "word", "number", "string", "char", "operator"
    text: str
    begin: int
    end: int


TOKEN = re.compile(
    r"""(?P<skip>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:\\\n|[^\n])*)
      | (?P<string>(?:u8|[uUL])?"(?:\\.|[^"\\\n])*")
      | (?P<char>(?:u8|[uUL])?'(?:\\.|[^'\\\n])*')
      | (?P<number>\.?[0-9](?:[eEpP][+-]|'?[0-9A-Za-z_.])*)
      | (?P<word>[A-Za-z_]\w*)
      | (?P<operator><<=|>>=|\.\.\.|->\*|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|\[\[|\]\]|.)""",
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)

BINARY = {
    "<": ["<=", ">"],
    "<=": ["<", ">"],
    ">": [">=", "<"],
    ">=": [">", "<"],
    "==": ["!="],
    "!=": ["=="],
    "&&": ["||"],
    "||": ["&&"],
    "+": ["-"],
    "-": ["+"],
    "*": ["/"],
    "/": ["*"],
    "%": ["*"],
    "<<": [">>"],
    ">>": ["<<"],
    "&": ["|"],
    "|": ["&"],
    "^": ["&"],
    "+=": ["-=", "="],
    "-=": ["+=", "="],
    "*=": ["="],
    "/=": ["="],
    "%=": ["="],
    "|=": ["&=", "="],
    "&=": ["|=", "="],
    "^=": ["="],
    "<<=": [">>="],
    ">>=": ["<<="],
}
OPENING = {"(": ")", "[": "]", "{": "}", "[[": "]]"}
ASSIGNING = {"=", "+=", "-=", "*=", "/=", "%=", "|=", "&=", "^=", "<<=", ">>=", "++", "--"}
# A name followed by one of these begins a statement, not a declaration.
CONTINUING = ASSIGNING | {"(", ".", "->", "["}
ENDING_STATEMENTS = {"break", "continue", "throw", "delete"}
NOT_STATEMENTS = {
    "if", "for", "while", "switch", "return", "do", "else", "case", "default", "catch", "try", "template", "namespace",
    "using", "typedef", "extern", "static_assert", "alignas", "operator", "sizeof", "goto",
}  # fmt: skip
# Declarations with parts that only the compiler evaluates.
NO_CHANGE_INSIDE = {"static_assert", "alignas", "__attribute__", "asm", "__asm__"}


def tokens_of(source):
    """Returns the tokens of a source, without white space, comments and preprocessor lines."""
    tokens = []
    for match in TOKEN.finditer(source):
        if match.lastgroup != "skip":
            tokens.append(Token(match.lastgroup, match.group(), match.start(), match.end()))
    return tokens


def partners_of(tokens):
    """Returns the index of the matching bracket for each bracket."""
    partners, stack = {}, []
    for index, token in enumerate(tokens):
        if token.kind != "operator":
            continue
        if token.text in OPENING:
            stack.append(index)
        elif stack and token.text == OPENING[tokens[stack[-1]].text]:
            partners[index] = stack.pop()
            partners[partners[index]] = index
        # Two subscripts may close at once: a[b[i]].
        elif token.text == "]]" and len(stack) > 1:
            partners[stack.pop()] = index
            partners[stack.pop()] = index
            partners[index] = index
    return partners


def excluded(tokens, partners):
    """Returns the indexes of tokens that are not evaluated at run time."""
    result = set()
    for index, token in enumerate(tokens):
        following = tokens[index + 1] if index + 1 < len(tokens) else None
        if token.text in NO_CHANGE_INSIDE and following and following.text == "(":
            result.update(range(index, partners.get(index + 1, index) + 1))
        elif token.text == "[[":
            result.update(range(index, partners.get(index, index) + 1))
        elif token.text in ("operator", "extern") and following:
            result.add(index + 1)
    return result


def number_changes(text):
    match = re.fullmatch(r"(0[xX][0-9a-fA-F']+|[0-9][0-9']*)([uUlL]*)", text)
    if not match:
        return [f"({text} + 1)"]
    value, suffix = int(match.group(1).replace("'", ""), 0 if match.group(1)[:2] in ("0x", "0X") else 10), match.group(2)
    if len(text) > 1 and text[0] == "0" and text[1:2].isdigit():
        return [f"({text} + 1)", f"({text} - 1)"]
    write = hex if text[:2] in ("0x", "0X") else str
    return [write(value + 1) + suffix] + ([write(value - 1) + suffix] if value > 0 else [])


def char_changes(text):
    inner = text[text.index("'") + 1 : -1]
    return [text.replace(f"'{inner}'", "'a'" if inner == "z" or not inner.isalnum() else f"'{chr(ord(inner) + 1)}'")]


def string_changes(text):
    quote = text.index('"')
    return [text[: quote + 1] + "#" + text[quote + 1 :]]


def condition_changes(source, begin, end):
    text = source[begin:end]
    return [Mutation(begin, end, f"!({text})"), Mutation(begin, end, f"({text}) || true"),
            Mutation(begin, end, f"({text}) && false")]  # fmt: skip


def end_of_statement(tokens, partners, start):
    """Returns the index of the semicolon that ends the statement, or None if the statement is not simple."""
    index = start
    while index < len(tokens):
        text = tokens[index].text
        if text == ";":
            return index
        if text in OPENING and index in partners:
            if text == "{":
                return None
            index = partners[index]
        elif text in ("}", ")", "]"):
            return None
        index += 1
    return None


def is_expression(tokens, start):
    """Whether a statement starts here, rather than a declaration, so that it can be removed."""
    first = tokens[start]
    if first.text in ENDING_STATEMENTS or first.text in ("++", "--", "*"):
        return True
    if first.text == "return":
        return tokens[start + 1].text == ";"
    if first.kind != "word" or first.text in NOT_STATEMENTS:
        return False
    index = start
    while tokens[index].kind == "word" and tokens[index + 1].text == "::":
        index += 2
    return tokens[index].kind == "word" and tokens[index + 1].text in CONTINUING


def starts_statement(tokens, partners, index):
    previous = tokens[index - 1].text
    if previous in (";", "{", "}", "else", "do"):
        return True
    if previous == ")" and index - 1 in partners:
        before = partners[index - 1] - 1
        return before >= 0 and tokens[before].text in ("if", "for", "while")
    if previous == ":":
        return tokens[index - 2].text == "default" or (index > 2 and tokens[index - 3].text == "case")
    return False


def blank(source, begin, end):
    """Returns as many newlines as the text has."""
    return "\n" * source.count("\n", begin, end)


def sites_of(source):
    """Returns the places that can be changed, each as a list of possible changes."""
    tokens = tokens_of(source)
    partners = partners_of(tokens)
    ignored = excluded(tokens, partners)
    sites = []
    for index, token in enumerate(tokens[:-1]):
        if index in ignored or index == 0:
            continue
        previous, following = tokens[index - 1], tokens[index + 1]
        apart = previous.end < token.begin and token.end < following.begin
        replacements = []
        if token.kind == "number":
            replacements = number_changes(token.text)
        elif token.kind == "char":
            replacements = char_changes(token.text)
        elif token.kind == "string":
            replacements = string_changes(token.text)
        elif token.text in ("true", "false"):
            replacements = ["false" if token.text == "true" else "true"]
        elif token.text in BINARY and apart:
            replacements = BINARY[token.text]
        elif token.text in ("++", "--"):
            replacements = ["--" if token.text == "++" else "++"]
        elif token.text == "!" or (token.text == "~" and previous.text != "::") or (token.text == "-" and previous.end <= token.begin and not apart
                                          and previous.kind == "operator" and previous.text not in (")", "]")):  # fmt: skip
            replacements = [" "]
        elif token.text == "?":
            replacements = ["&& false ?", "|| true ?"]
        changes = [Mutation(token.begin, token.end, text) for text in replacements]

        if token.text in ("if", "while") and following.text == "(" and index + 1 in partners:
            changes += condition_changes(source, following.end, tokens[partners[index + 1]].begin)
        elif token.text == "for" and following.text == "(" and index + 1 in partners:
            first = end_of_statement(tokens, partners, index + 2)
            second = end_of_statement(tokens, partners, first + 1) if first is not None else None
            if second is not None and second > first + 1:
                changes += condition_changes(source, tokens[first + 1].begin, tokens[second].begin)
        elif token.text == "return" and following.text != ";":
            end = index + 1
            while end < len(tokens) and tokens[end].text != ";":
                end = partners.get(end, end) + 1
            if end < len(tokens):
                begin, end = following.begin, tokens[end].begin
                changes += [Mutation(begin, end, "{}" + blank(source, begin, end)),
                            Mutation(begin, end, f"!({source[begin:end]})")]  # fmt: skip
        if changes:
            sites.append(changes)

        if starts_statement(tokens, partners, index) and is_expression(tokens, index):
            end = end_of_statement(tokens, partners, index)
            if end is not None:
                stop = tokens[end].begin
                sites.append([Mutation(token.begin, stop, blank(source, token.begin, stop))])
    return sites


def apply(source, mutation):
    """Returns the changed source, with the same number of lines."""
    return source[: mutation.begin] + mutation.text + source[mutation.end :]


def describe(source, mutation):
    """Returns the line number of a change, and the changed lines before and after, each joined into one line."""
    begin = source.rfind("\n", 0, mutation.begin) + 1
    end = source.find("\n", mutation.end)
    before = " ".join(source[begin:end].split())
    after = " ".join((source[begin : mutation.begin] + mutation.text + source[mutation.end : end]).split())
    return source.count("\n", 0, mutation.begin) + 1, before, after
