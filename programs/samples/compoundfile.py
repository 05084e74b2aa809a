"""Writes OLE2 compound files: the container of the binary office formats."""

import struct
import uuid

SECTOR = 512
MINI_SECTOR = 64
# Smaller streams are stored in the mini stream.
MINI_STREAM_LIMIT = 4096

FREE = 0xFFFFFFFF
END_OF_CHAIN = 0xFFFFFFFE
ALLOCATION_SECTOR = 0xFFFFFFFD
NO_ENTRY = 0xFFFFFFFF

STREAM, ROOT = 2, 5
BLACK = 1
HEADER_ALLOCATION_SECTORS = 109


def _padded(data, unit):
    return data + bytes(-len(data) % unit)


def _chain(table, count):
    """Appends a chain of count sectors to an allocation table; returns the first sector."""
    if count == 0:
        return END_OF_CHAIN
    first = len(table)
    table.extend(range(first + 1, first + count))
    table.append(END_OF_CHAIN)
    return first


def _order(name):
    """The sort key of directory entries: the length, then the upper-cased name."""
    return len(name.encode('utf-16-le')), name.upper()


class _Entry:
    def __init__(self, name, kind, start, size, class_id=None):
        self.name, self.kind, self.start, self.size = name, kind, start, size
        self.class_id = class_id
        self.left = self.right = self.child = NO_ENTRY

    def bytes(self):
        name = self.name.encode('utf-16-le') + b'\0\0'
        return struct.pack(
            '<64sHBBIII16sIQQIQ', name, len(name), self.kind, BLACK, self.left, self.right,
            self.child, self.class_id.bytes_le if self.class_id else bytes(16), 0, 0, 0,
            self.start, self.size)


def _balanced(entries, first, last):
    """Links entries[first:last], sorted, into a search tree; returns the index of its root."""
    if first == last:
        return NO_ENTRY
    middle = (first + last) // 2
    entries[middle].left = _balanced(entries, first, middle)
    entries[middle].right = _balanced(entries, middle + 1, last)
    return middle


def compound_file(class_id, streams):
    """The bytes of a compound file with the streams {name: bytes} in its root."""
    sectors, table = bytearray(), []
    mini_sectors, mini_table = bytearray(), []
    entries = [_Entry('Root Entry', ROOT, END_OF_CHAIN, 0, uuid.UUID(class_id))]

    def store(data):
        sectors.extend(_padded(data, SECTOR))
        return _chain(table, len(_padded(data, SECTOR)) // SECTOR)

    for name in sorted(streams, key=_order):
        data = streams[name]
        if len(data) < MINI_STREAM_LIMIT:
            start = _chain(mini_table, len(_padded(data, MINI_SECTOR)) // MINI_SECTOR)
            mini_sectors.extend(_padded(data, MINI_SECTOR))
        else:
            start = store(data)
        entries.append(_Entry(name, STREAM, start, len(data)))
    entries[0].child = _balanced(entries, 1, len(entries))
    entries[0].start, entries[0].size = store(bytes(mini_sectors)), len(mini_sectors)

    mini_allocation = b''.join(struct.pack('<I', item) for item in mini_table)
    mini_allocation += b'\xff' * (-len(mini_allocation) % SECTOR)
    first_mini = store(mini_allocation)
    directory = b''.join(entry.bytes() for entry in entries)
    unused = struct.pack('<66xBB3I36xQ', 0, BLACK, NO_ENTRY, NO_ENTRY, NO_ENTRY, 0)
    directory += unused[:128].ljust(128, b'\0') * (-len(entries) % (SECTOR // 128))
    first_directory = store(directory)
    return _with_header(bytes(sectors), table, first_directory, first_mini,
                        len(mini_allocation) // SECTOR)


def _with_header(sectors, table, first_directory, first_mini, mini_count):
    per_sector = SECTOR // 4
    own = 1
    while own * per_sector < len(table) + own:
        own += 1
    if own > HEADER_ALLOCATION_SECTORS:
        raise ValueError('too large for a table of sectors in the header')
    first_own = len(table)
    table = table + [ALLOCATION_SECTOR] * own
    table += [FREE] * (own * per_sector - len(table))
    header = struct.pack(
        '<8s16xHHHHH6xIIIIIIIII', bytes.fromhex('d0cf11e0a1b11ae1'), 0x3E, 3, 0xFFFE, 9, 6, 0,
        own, first_directory, 0, MINI_STREAM_LIMIT, first_mini, mini_count, END_OF_CHAIN, 0)
    places = list(range(first_own, first_own + own))
    places += [FREE] * (HEADER_ALLOCATION_SECTORS - own)
    header += struct.pack(f'<{HEADER_ALLOCATION_SECTORS}I', *places)
    return header + sectors + struct.pack(f'<{len(table)}I', *table)
