"""Content types and relationships, which the three Office Open XML formats share."""

from package import zip_package

DECLARATION = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
PACKAGE = 'http://schemas.openxmlformats.org/package/2006'
DOCUMENT = 'http://schemas.openxmlformats.org/officeDocument/2006/relationships'
STANDARD_TYPE = 'application/vnd.openxmlformats-officedocument'


def _content_types(types):
    overrides = ''.join(f'<Override PartName="/{part}" ContentType="{kind}"/>'
                        for part, kind in types.items())
    return (f'{DECLARATION}<Types xmlns="{PACKAGE}/content-types">'
            f'<Default Extension="rels" ContentType="{_RELATIONSHIPS_TYPE}"/>'
            f'<Default Extension="xml" ContentType="application/xml"/>{overrides}</Types>')


_RELATIONSHIPS_TYPE = 'application/vnd.openxmlformats-package.relationships+xml'


def relationships(*targets):
    """The part that lists these (kind, target) pairs as rId1, rId2, …"""
    items = ''.join(f'<Relationship Id="rId{at}" Type="{DOCUMENT}/{kind}" Target="{target}"/>'
                    for at, (kind, target) in enumerate(targets, 1))
    return f'{DECLARATION}<Relationships xmlns="{PACKAGE}/relationships">{items}</Relationships>'


def open_xml_package(main_part, types, parts):
    """types: {part: content type}; parts: {name: XML, with or without a declaration}."""
    texts = {'[Content_Types].xml': _content_types(types),
             '_rels/.rels': relationships(('officeDocument', main_part))}
    for name, text in parts.items():
        texts[name] = text if text.startswith('<?xml') else DECLARATION + text
    return zip_package(texts)
