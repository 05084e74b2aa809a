"""makesamples.py DIRECTORY: writes vyr.SUFFIX for each suffix that the file associations cover."""

import pathlib
import sys

from binarypresentation import binary_presentation
from binaryworddocument import binary_word_document
from binaryworkbook import binary_workbook
from openpresentation import open_presentation
from openworddocument import open_word_document
from openworkbook import open_workbook
from richtext import rich_text
from suitedocument import suite_document

SUITE_SUFFIXES = (
    'shd', 'shdx', 'sht', 'shtx', 'shds', 'shdo',
    'tbl', 'tblx', 'tbt', 'tbtx', 'tbls', 'tblo',
    'vyr', 'vyrx', 'vyrs', 'vyro', 'vyt', 'vytx',
)


def samples():
    """The bytes of each sample by its suffix."""
    documents = {
        'doc': binary_word_document(is_template=False),
        'dot': binary_word_document(is_template=True),
        'xls': binary_workbook(is_template=False),
        'xlt': binary_workbook(is_template=True),
        'rtf': rich_text(),
    }
    # The three differ in their name alone.
    documents.update(dict.fromkeys(('ppt', 'pps', 'pot'), binary_presentation()))
    for suffix in ('docx', 'docm', 'dotx', 'dotm'):
        documents[suffix] = open_word_document(suffix)
    for suffix in ('xlsx', 'xlsm', 'xltx', 'xltm'):
        documents[suffix] = open_workbook(suffix)
    for suffix in ('pptx', 'pptm', 'ppsx', 'potx', 'potm'):
        documents[suffix] = open_presentation(suffix)
    for suffix in SUITE_SUFFIXES:
        documents[suffix] = suite_document(suffix)
    return documents


def main(arguments):
    if len(arguments) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    directory = pathlib.Path(arguments[0])
    directory.mkdir(parents=True, exist_ok=True)
    for suffix, content in samples().items():
        (directory / f'vyr.{suffix}').write_bytes(content)
    return 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
