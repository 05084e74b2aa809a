"""Binary PowerPoint presentations (.ppt, .pps, .pot): a master and one slide with a text box."""

import struct

from compoundfile import compound_file
import propertyset
from texts import LATIN_FONT, LINES

CLASS_ID = '64818D10-4F9B-11CF-86EA-00AA00B929E8'

# Records of the presentation.
DOCUMENT, DOCUMENT_ATOM, DOCUMENT_END = 0x03E8, 0x03E9, 0x03EA
SLIDE, SLIDE_ATOM, SLIDE_PERSIST, MAIN_MASTER = 0x03EE, 0x03EF, 0x03F3, 0x03F8
ENVIRONMENT, DRAWING_GROUP, DRAWING = 0x03F2, 0x040B, 0x040C
FONT_COLLECTION, FONT_ENTITY, COLOR_SCHEME = 0x07D5, 0x0FB7, 0x07F0
TEXT_HEADER, TEXT_CHARACTERS, TEXT_STYLE, MASTER_STYLE = 0x0F9F, 0x0FA0, 0x0FA1, 0x0FA3
SLIDE_LIST, USER_EDIT, CURRENT_USER, PERSIST_DIRECTORY = 0x0FF0, 0x0FF5, 0x0FF6, 0x1772

# Records of its drawings.
ALL_DRAWINGS, ONE_DRAWING, SHAPE_GROUP, SHAPE = 0xF000, 0xF002, 0xF003, 0xF004
ALL_DRAWINGS_ATOM, ONE_DRAWING_ATOM, GROUP_ATOM, SHAPE_ATOM = 0xF006, 0xF008, 0xF009, 0xF00A
SHAPE_TEXT, SHAPE_ANCHOR = 0xF00D, 0xF010
RECTANGLE, TEXT_BOX = 1, 202
IS_GROUP, IS_TOP, HAS_ANCHOR, IS_BACKGROUND, HAS_TYPE = 0x001, 0x004, 0x200, 0x400, 0x800

# The numbers with which parts refer to each other.
DOCUMENT_NUMBER, MASTER_NUMBER, SLIDE_NUMBER = 1, 2, 3
MASTER_ID, SLIDE_ID = 0x80000000, 256
SHAPES_PER_DRAWING = 3
FOLLOWS_MASTER = 0x0007
OTHER_TEXT = 4
SETS_FONT, SETS_SIZE = 0x00010000, 0x00020000
COLORS = (0xFFFFFF, 0x000000, 0x808080, 0x000000, 0xE3E3BB, 0x993333, 0x999900, 0xCC9900)


def _atom(kind, data=b'', version=0, instance=0):
    return struct.pack('<HHI', version | instance << 4, kind, len(data)) + data


def _container(kind, *children, instance=0):
    return _atom(kind, b''.join(children), 0xF, instance)


def _shape(kind, number, flags, *parts, before=b''):
    atom = _atom(SHAPE_ATOM, struct.pack('<II', number, flags), 2, kind)
    return _container(SHAPE, before, atom, *parts)


def _text_box(number):
    text = '\r'.join(LINES)
    # One run of paragraph properties and one of character properties; both set nothing.
    style = struct.pack('<IHIII', len(text) + 1, 0, 0, len(text) + 1, 0)
    return _shape(
        TEXT_BOX, number, HAS_ANCHOR | HAS_TYPE,
        _atom(SHAPE_ANCHOR, struct.pack('<4h', 400, 400, 5360, 2000)),
        _container(SHAPE_TEXT, _atom(TEXT_HEADER, struct.pack('<I', OTHER_TEXT)),
                   _atom(TEXT_CHARACTERS, text.encode('utf-16-le')), _atom(TEXT_STYLE, style)))


def _drawing(number, *shapes):
    first = number * 1024
    group = _shape(0, first, IS_GROUP | IS_TOP, before=_atom(GROUP_ATOM, bytes(16), 1))
    background = _shape(RECTANGLE, first + 1, IS_BACKGROUND | HAS_TYPE)
    return _container(DRAWING, _container(
        ONE_DRAWING,
        _atom(ONE_DRAWING_ATOM, struct.pack('<II', len(shapes) + 2, first + 1 + len(shapes)),
              0, number),
        _container(SHAPE_GROUP, group, *shapes), background))


def _colors(instance):
    return _atom(COLOR_SCHEME, struct.pack('<8I', *COLORS), 0, instance)


def _slide_atom(layout, master, flags):
    return _atom(SLIDE_ATOM, struct.pack('<I8sIIHH', layout, bytes(8), master, 0, flags, 0), 2)


def _environment():
    font = LATIN_FONT.encode('utf-16-le').ljust(64, b'\0') + struct.pack('<BBBB', 0, 0, 4, 0x22)
    level = struct.pack('<IIHH', 0, SETS_FONT | SETS_SIZE, 0, 18)
    master_style = _atom(MASTER_STYLE, struct.pack('<H', 1) + level, 0, OTHER_TEXT)
    return _container(ENVIRONMENT,
                      _container(FONT_COLLECTION, _atom(FONT_ENTITY, font)), master_style)


def _persisted(number, identifier):
    return _atom(SLIDE_PERSIST, struct.pack('<IIIII', number, 0, 0, identifier, 0))


def _document():
    sizes = struct.pack('<6i', 5760, 4320, 4320, 5760, 5, 10)
    atom = _atom(DOCUMENT_ATOM, sizes + struct.pack('<IIHHBBBB', 0, 0, 1, 0, 0, 0, 0, 1), 1)
    clusters = struct.pack('<4I', 1, SHAPES_PER_DRAWING, 2, SHAPES_PER_DRAWING)
    drawings = _container(DRAWING_GROUP, _container(ALL_DRAWINGS, _atom(
        ALL_DRAWINGS_ATOM,
        struct.pack('<4I', 3 * 1024, 3, 2 * SHAPES_PER_DRAWING, 2) + clusters)))
    return _container(
        DOCUMENT, atom, _environment(), drawings,
        _container(SLIDE_LIST, _persisted(MASTER_NUMBER, MASTER_ID), instance=1),
        _container(SLIDE_LIST, _persisted(SLIDE_NUMBER, SLIDE_ID)),
        _atom(DOCUMENT_END))


def _master():
    return _container(MAIN_MASTER, _slide_atom(1, 0, 0), _colors(6), _drawing(1), _colors(1))


def _slide():
    return _container(SLIDE, _slide_atom(16, MASTER_ID, FOLLOWS_MASTER),
                      _drawing(2, _text_box(2 * 1024 + 2)), _colors(1))


def binary_presentation():
    stream, places = b'', []
    for part in (_document(), _master(), _slide()):
        places.append(len(stream))
        stream += part
    directory_place = len(stream)
    stream += _atom(PERSIST_DIRECTORY,
                    struct.pack('<I3I', len(places) << 20 | DOCUMENT_NUMBER, *places))
    edit_place = len(stream)
    stream += _atom(USER_EDIT, struct.pack(
        '<IHBBIIIIHH', SLIDE_ID, 0, 0, 3, 0, directory_place, DOCUMENT_NUMBER, SLIDE_NUMBER + 1,
        1, 0))
    user = _atom(CURRENT_USER, struct.pack(
        '<IIIHHBBH', 20, 0xE391C05F, edit_place, 0, 0x03F4, 3, 0, 0) + struct.pack('<I', 8))
    return compound_file(CLASS_ID, {
        'PowerPoint Document': stream.ljust(4096, b'\0'), 'Current User': user,
        propertyset.STREAM_NAME: propertyset.summary_information()})
