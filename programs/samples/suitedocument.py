"""The suite's own suffixes. What the suite itself writes is not public; the samples are a container
of this project's own, described in docs/samples.md: a ZIP package that names its type first, as
OpenDocument files do, and has its text in content.xml."""

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
