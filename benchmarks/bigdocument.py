"""bigdocument.py PATH: writes a text document of 100 MB whose XML unpacks to 100 MB."""

import random
import sys
import zipfile

MEGABYTE = 1000 * 1000
XML_BYTES = 100 * MEGABYTE
DOCUMENT_BYTES = 100 * MEGABYTE

RELATIONSHIPS = (
    '<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">'
    '<Relationship Id="r1" Type="http://schemas.openxmlformats.org/officeDocument/2006/'
    'relationships/officeDocument" Target="word/document.xml"/></Relationships>'
)
BEGIN = (
    '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n<w:document '
    'xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main"><w:body>'
)
WORDS = "the quick brown fox jumps over a lazy dog report figure table 文档 字体 测试".split()


def run(chance, number):
    text = " ".join(chance.choice(WORDS) for _ in range(12))
    return (
        f'<w:r><w:rPr><w:rFonts w:ascii="Font {number}" w:hAnsi="Font {number}" '
        f'w:eastAsia="SimSun"/><w:sz w:val="24"/></w:rPr>'
        f'<w:t xml:space="preserve">{text}</w:t></w:r>'
    )


def paragraph(chance):
    return (
        f'<w:p w:rsidR="{chance.getrandbits(32):08X}"><w:pPr><w:pStyle w:val="Normal"/></w:pPr>'
        + "".join(run(chance, number) for number in range(4))
        + "</w:p>"
    ).encode()


def main(path):
    chance = random.Random(1)
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as package:
        package.writestr("_rels/.rels", RELATIONSHIPS)
        with package.open("word/document.xml", "w") as part:
            size = part.write(BEGIN.encode())
            while size < XML_BYTES:
                size += part.write(paragraph(chance))
            part.write(b"</w:body></w:document>")
        rest = DOCUMENT_BYTES - package.fp.tell()
        with package.open(zipfile.ZipInfo("word/media/picture.png"), "w") as part:
            for _ in range(rest // MEGABYTE + 1):
                part.write(chance.randbytes(MEGABYTE))


main(sys.argv[1])
