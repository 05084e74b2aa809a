"""Binary Excel workbooks (.xls, .xlt): one sheet of text and a number."""

import struct

from compoundfile import compound_file
import propertyset
from texts import LATIN_FONT, LINES, TITLE

CLASS_ID = '00020820-0000-0000-C000-000000000046'

BEGIN, END = 0x0809, 0x000A
CODE_PAGE, TEMPLATE, WINDOW, FONT, CELL_FORMAT, STYLE = 0x42, 0x60, 0x3D, 0x31, 0xE0, 0x0293
SHEET, SHARED_TEXTS = 0x85, 0xFC
DIMENSIONS, ROW_TEXT, NUMBER, SHEET_WINDOW = 0x0200, 0xFD, 0x0203, 0x023E
GLOBALS, WORKSHEET = 0x0005, 0x0010
UTF16 = 1200
# The first formats belong to styles; the one after them is that of the cells.
STYLE_FORMATS = 15


def _record(number, data=b''):
    return struct.pack('<HH', number, len(data)) + data


def _begin(kind):
    return _record(BEGIN, struct.pack('<HHHHII', 0x0600, kind, 0x0DBB, 0x07CC, 0x41, 0x0600))


def _short_text(text):
    return struct.pack('<BB', len(text), 1) + text.encode('utf-16-le')


def _font():
    return _record(FONT, struct.pack('<HHHHHBBBB', 200, 0, 0x7FFF, 400, 0, 0, 0, 0, 0)
                   + _short_text(LATIN_FONT))


def _cell_format(is_style):
    flags = 0xFFF5 if is_style else 0x0001
    return _record(CELL_FORMAT, struct.pack('<HHHBBBBIIH', 0, 0, flags, 0x20, 0, 0,
                                            0xF4 if is_style else 0, 0, 0, 0x20C0))


def _shared_texts():
    texts = b''.join(struct.pack('<HB', len(line), 1) + line.encode('utf-16-le')
                     for line in LINES)
    return _record(SHARED_TEXTS, struct.pack('<II', len(LINES), len(LINES)) + texts)


def _worksheet():
    rows = len(LINES) + 1
    cells = b''.join(_record(ROW_TEXT, struct.pack('<HHHI', row, 0, STYLE_FORMATS, row))
                     for row in range(len(LINES)))
    cells += _record(NUMBER, struct.pack('<HHHd', len(LINES), 0, STYLE_FORMATS, 39.0))
    window = struct.pack('<HHHIHHI', 0x06B6, 0, 0, 64, 0, 0, 0)
    return (_begin(WORKSHEET) + _record(DIMENSIONS, struct.pack('<IIHHH', 0, rows, 0, 1, 0))
            + cells + _record(SHEET_WINDOW, window) + _record(END))


def binary_workbook(is_template):
    before = _begin(GLOBALS)
    if is_template:
        before += _record(TEMPLATE)
    before += _record(CODE_PAGE, struct.pack('<H', UTF16))
    before += _record(WINDOW, struct.pack('<9H', 0, 0, 16384, 8192, 0x38, 0, 0, 1, 600))
    before += _font() * 4
    before += _cell_format(True) * STYLE_FORMATS + _cell_format(False)
    before += _record(STYLE, struct.pack('<HBB', 0x8000, 0, 0xFF))
    name = _short_text(TITLE)
    after = _shared_texts() + _record(END)
    sheet_start = len(before) + 4 + 6 + len(name) + len(after)
    globals_ = before + _record(SHEET, struct.pack('<IH', sheet_start, 0) + name) + after
    workbook = (globals_ + _worksheet()).ljust(4096, b'\0')
    return compound_file(CLASS_ID, {
        'Workbook': workbook, propertyset.STREAM_NAME: propertyset.summary_information()})
