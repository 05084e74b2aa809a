"""The summary that file managers show of a binary document."""

import struct
import uuid

from texts import TITLE

STREAM_NAME = '\x05SummaryInformation'
_FORMAT = uuid.UUID('F29F85E0-4FF9-1068-AB91-08002B27B3D9')
_CODE_PAGE, _TITLE = 1, 2
_SHORT, _TEXT = 2, 30
_UTF8 = 65001


def summary_information():
    """The bytes of that stream: the title and its encoding."""
    text = TITLE.encode() + b'\0'
    values = {
        _CODE_PAGE: struct.pack('<IHxx', _SHORT, _UTF8),
        _TITLE: struct.pack('<II', _TEXT, len(text)) + text + bytes(-len(text) % 4),
    }
    places, data = b'', b''
    start = 8 + 8 * len(values)
    for number, value in values.items():
        places += struct.pack('<II', number, start + len(data))
        data += value
    section = struct.pack('<II', start + len(data), len(values)) + places + data
    return struct.pack('<HHI16xI', 0xFFFE, 0, 0x00020006, 1) + _FORMAT.bytes_le \
        + struct.pack('<I', 48) + section
