"""Texts, numbers and sizes as people read them."""

import unicodedata

# Characters that would change the order in which others are shown, or are not seen at all.
_HIDDEN = frozenset("\u00ad\u061c\u200b\u200e\u200f\u2060\ufeff") | frozenset(
    chr(code)
    for codes in (range(0x202A, 0x202F), range(0x2066, 0x206A), range(0xE0000, 0xE0080))
    for code in codes
)
# Control characters, lone surrogates, line and paragraph separators, and what is no character.
_ESCAPED_CATEGORIES = frozenset({"Cc", "Cs", "Zl", "Zp", "Cn"})
_SHORT = {"\n": "\\n", "\r": "\\r", "\t": "\\t"}

_UNITS = ("kB", "MB", "GB", "TB", "PB", "EB")


def visible(text: str) -> str:
    """The text with escapes for what cannot be shown or would disturb what is beside it.

    A byte that is no UTF-8, which is a surrogate here, is shown as that byte.
    """
    if text.isascii() and text.isprintable():
        return text
    return "".join(_visible_character(character) for character in text)


def _visible_character(character: str) -> str:
    if character not in _HIDDEN and unicodedata.category(character) not in _ESCAPED_CATEGORIES:
        return character
    code = ord(character)
    if 0xDC80 <= code <= 0xDCFF:
        return f"\\x{code - 0xDC00:02x}"
    if character in _SHORT:
        return _SHORT[character]
    return (
        f"\\x{code:02x}"
        if code < 0x100
        else f"\\u{code:04x}"
        if code < 0x10000
        else f"\\U{code:08x}"
    )


def shortened(text: str, columns: int) -> str:
    """The text, cut with an ellipsis where it would take more columns; wide characters take two."""
    width = fitting = 0
    for place, character in enumerate(text):
        width += 2 if unicodedata.east_asian_width(character) in "WF" else 1
        if width > columns:
            return text[:fitting].rstrip() + "\u2026"
        if width < columns:
            fitting = place + 1
    return text


def number(value: int) -> str:
    """12345 as "12,345"."""
    return f"{value:,}"


def size(count: int) -> str:
    """A number of bytes with three digits and a decimal unit: "4.05 kB"."""
    if count < 1000:
        return "1 byte" if count == 1 else f"{count} bytes"
    value = float(count)
    for unit in _UNITS:
        value /= 1000
        if value < 999.5 or unit == _UNITS[-1]:
            break
    return f"{value:.3g} {unit}" if value < 999.5 else f"{value:,.0f} {unit}"


def share(part: int, whole: int) -> str:
    """Part of a whole in percent, which is 0 or 100 only where that is exactly so."""
    if whole == 0:
        return ""
    percent = 100 * part / whole
    if 0 < percent < 0.1:
        return "under 0.1 %"
    if 99.9 < percent < 100:
        return "over 99.9 %"
    return f"{percent:.1f} %".replace(".0 %", " %")


def plural(count: int, word: str) -> str:
    """A number and a word in singular or plural: "1 file", "2,000 files"."""
    return f"{number(count)} {word}{'' if count == 1 else 's'}"
