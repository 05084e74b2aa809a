"""Binary Word documents (.doc, .dot): one section of plain paragraphs."""

import struct

from compoundfile import compound_file
import propertyset
from texts import CHINESE_FONT, LATIN_FONT, LINES

CLASS_ID = '00020906-0000-0000-C000-000000000046'

PAGE = 512
TEXT_START = 2 * PAGE

# Indexes in the list of parts at the end of the file information block.
PARTS = 0x5D
STYLE_SHEET, SECTIONS, CHARACTER_PAGES, PARAGRAPH_PAGES = 1, 6, 12, 13
FONT_TABLE, DOCUMENT_PROPERTIES, TEXT_PIECES = 15, 31, 33

IS_TEMPLATE, TABLE_STREAM_1, EXTENDED_CHARACTERS = 0x0001, 0x0200, 0x1000


def _text():
    return ''.join(f'{line}\r' for line in LINES)


def _counted(text):
    """A text after its length and before a zero."""
    return struct.pack('<H', len(text)) + text.encode('utf-16-le') + b'\0\0'


def _style(identifier, kind, name, properties):
    base = struct.pack('<5H', identifier, kind | 0xFFF << 4, len(properties), 0, 0)
    body = base + _counted(name)
    for property_list in properties:
        body += struct.pack('<H', len(property_list)) + property_list
        body += bytes(len(property_list) % 2)
    # The third word is the length of the whole style.
    body = body[:6] + struct.pack('<H', len(body)) + body[8:]
    return struct.pack('<H', len(body)) + body


def _style_sheet():
    sizes = struct.pack('<9H', 15, 10, 1, 0x5B, 15, 0, 0, 0, 0)
    normal = _style(0, 1, 'Normal', [struct.pack('<H', 0), b''])
    characters = _style(65, 2, 'Default Paragraph Font', [b''])
    styles = [normal] + [b'\0\0'] * 9 + [characters] + [b'\0\0'] * 4
    return struct.pack('<H', len(sizes)) + sizes + b''.join(styles)


def _font_table():
    fonts = b''
    for name, script in ((LATIN_FONT, 0), (CHINESE_FONT, 134)):
        font = struct.pack('<BHBB', 0x26, 400, script, 0) + bytes(34)
        font += name.encode('utf-16-le') + b'\0\0'
        fonts += struct.pack('<B', len(font)) + font
    return struct.pack('<HH', 2, 0) + fonts


def _formatted_page(ends, entry_size):
    """A page of runs or paragraphs without formatting of their own."""
    page = struct.pack(f'<{len(ends)}I', *ends) + bytes(entry_size * (len(ends) - 1))
    return page.ljust(PAGE - 1, b'\0') + struct.pack('<B', len(ends) - 1)


def _page_table(start, end, page):
    return struct.pack('<III', start, end, page)


def _information_block(parts, length, table_size, text_end, flags):
    base = struct.pack('<HHHHHHHIBBHHII', 0xA5EC, 0xC1, 0, 0x0409, 0, flags, 0xBF, 0, 0, 0, 0, 0,
                       TEXT_START, text_end)
    words = struct.pack('<H', 14) + bytes(28)
    numbers = struct.pack('<H22I', 22, table_size, 0, 0, length, *[0] * 18)
    places = b''.join(struct.pack('<II', *parts.get(at, (0, 0))) for at in range(PARTS))
    return base + words + numbers + struct.pack('<H', PARTS) + places + struct.pack('<H', 0)


def binary_word_document(is_template):
    text = _text()
    text_end = TEXT_START + 2 * len(text)
    first_page = -(-text_end // PAGE)
    ends, position = [TEXT_START], TEXT_START
    for line in LINES:
        position += 2 * (len(line) + 1)
        ends.append(position)

    pieces = struct.pack('<IIHIH', 0, len(text), 0, TEXT_START, 0)
    table, parts = b'', {}
    for place, data in (
            (STYLE_SHEET, _style_sheet()),
            (SECTIONS, struct.pack('<IIHIHI', 0, len(text), 0, 0xFFFFFFFF, 0, 0xFFFFFFFF)),
            (CHARACTER_PAGES, _page_table(TEXT_START, text_end, first_page)),
            (PARAGRAPH_PAGES, _page_table(TEXT_START, text_end, first_page + 1)),
            (FONT_TABLE, _font_table()),
            (DOCUMENT_PROPERTIES, bytes(500)),
            (TEXT_PIECES, struct.pack('<BI', 2, len(pieces)) + pieces)):
        parts[place] = (len(table), len(data))
        table += data

    flags = TABLE_STREAM_1 | EXTENDED_CHARACTERS | (IS_TEMPLATE if is_template else 0)
    last_page = first_page + 2
    document = _information_block(parts, len(text), last_page * PAGE, text_end, flags)
    document = document.ljust(TEXT_START, b'\0') + text.encode('utf-16-le')
    document = document.ljust(first_page * PAGE, b'\0')
    document += _formatted_page([TEXT_START, text_end], 1) + _formatted_page(ends, 13)
    # Readers expect this stream among the large ones.
    document = document.ljust(4096, b'\0')
    return compound_file(CLASS_ID, {
        'WordDocument': document, '1Table': table,
        propertyset.STREAM_NAME: propertyset.summary_information()})
