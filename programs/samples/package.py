"""Writes the ZIP packages of the newer formats, reproducibly."""

import io
import zipfile

_EARLIEST = (1980, 1, 1, 0, 0, 0)


def zip_package(parts, stored=()):
    """The bytes of a package with the parts {name: text} in this order.

    stored: names of the parts that are not compressed.
    """
    buffer = io.BytesIO()
    with zipfile.ZipFile(buffer, 'w') as package:
        for name, text in parts.items():
            entry = zipfile.ZipInfo(name, _EARLIEST)
            entry.compress_type = zipfile.ZIP_STORED if name in stored else zipfile.ZIP_DEFLATED
            package.writestr(entry, text)
    return buffer.getvalue()
