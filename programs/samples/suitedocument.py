"""Documents with the suite's own suffixes.

The suite's format is not public, so these samples use a container of this project, described in
docs/samples.md: a ZIP package whose first member is its type, as in OpenDocument files, with the
text in content.xml.
"""

from package import zip_package
from texts import LINES, TITLE

TYPE_PART, CONTENT_PART = 'mimetype', 'content.xml'
NAMESPACE = 'urn:office-assistant:sample-document'


def suite_document(suffix):
    lines = ''.join(f'  <line>{line}</line>\n' for line in LINES)
    content = ('<?xml version="1.0" encoding="UTF-8"?>\n'
               f'<document xmlns="{NAMESPACE}" version="1">\n  <title>{TITLE}</title>\n'
               f'{lines}</document>\n')
    return zip_package({TYPE_PART: f'application/vyr-office.{suffix}', CONTENT_PART: content},
                       stored=(TYPE_PART,))
