"""Rich text (.rtf)."""

from texts import CHINESE_FONT, LATIN_FONT, LINES


def _escaped(text):
    """ASCII unchanged, other letters as code units; the question mark is what old readers show."""
    return ''.join(letter if letter.isascii() else f'\\u{_signed(ord(letter))}?'
                   for letter in text)


def _signed(number):
    return number - 0x10000 if number > 0x7FFF else number


def rich_text():
    paragraphs = ''.join(
        f'\\pard\\f{0 if line.isascii() else 1} {_escaped(line)}\\par\n' for line in LINES)
    return ('{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n'
            f'{{\\fonttbl{{\\f0\\fswiss {LATIN_FONT};}}'
            f'{{\\f1\\fnil\\fcharset134 {CHINESE_FONT};}}}}\n'
            f'{paragraphs}}}\n').encode('ascii')
