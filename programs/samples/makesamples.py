"""Writes a sample document vyr.SUFFIX for each suffix that the file associations cover."""

import argparse
import pathlib

from binarypresentation import binary_presentation
from binaryworddocument import binary_word_document
from binaryworkbook import binary_workbook
from openpresentation import open_presentation
from openworddocument import open_word_document
from openworkbook import open_workbook
from richtext import rich_text
from suitedocument import suite_document


def known_documents():
    """The bytes of a document of each known format, by suffix."""
    documents = {
        'doc': binary_word_document(is_template=False),
        'dot': binary_word_document(is_template=True),
        'xls': binary_workbook(is_template=False),
        'xlt': binary_workbook(is_template=True),
        'rtf': rich_text(),
    }
    # The three differ only in their names.
    documents.update(dict.fromkeys(('ppt', 'pps', 'pot'), binary_presentation()))
    for suffix in ('docx', 'docm', 'dotx', 'dotm'):
        documents[suffix] = open_word_document(suffix)
    for suffix in ('xlsx', 'xlsm', 'xltx', 'xltm'):
        documents[suffix] = open_workbook(suffix)
    for suffix in ('pptx', 'pptm', 'ppsx', 'potx', 'potm'):
        documents[suffix] = open_presentation(suffix)
    return documents


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('directory', type=pathlib.Path)
    parser.add_argument('--known', nargs='+', required=True, help='suffixes of public formats')
    parser.add_argument('--own', nargs='+', required=True, help="the suite's own suffixes")
    arguments = parser.parse_args()
    documents = known_documents()
    different = set(documents).symmetric_difference(arguments.known)
    if different:
        parser.error(f'suffixes without a format, or not asked for: {sorted(different)}')
    documents.update((suffix, suite_document(suffix)) for suffix in arguments.own)
    arguments.directory.mkdir(parents=True, exist_ok=True)
    for suffix, content in documents.items():
        (arguments.directory / f'vyr.{suffix}').write_bytes(content)


if __name__ == '__main__':
    main()
