"""Word documents in Office Open XML: .docx, .docm, .dotx, .dotm."""

from openxml import open_xml_package, relationships, STANDARD_TYPE
from texts import CHINESE_FONT, LATIN_FONT, LINES

_WORD = 'http://schemas.openxmlformats.org/wordprocessingml/2006/main'
_MAIN_TYPES = {
    'docx': f'{STANDARD_TYPE}.wordprocessingml.document.main+xml',
    'docm': 'application/vnd.ms-word.document.macroEnabled.main+xml',
    'dotx': f'{STANDARD_TYPE}.wordprocessingml.template.main+xml',
    'dotm': 'application/vnd.ms-word.template.macroEnabledTemplate.main+xml',
}


def open_word_document(suffix):
    fonts = (f'<w:rFonts w:ascii="{LATIN_FONT}" w:hAnsi="{LATIN_FONT}"'
             f' w:eastAsia="{CHINESE_FONT}"/>')
    paragraphs = ''.join(f'<w:p><w:r><w:t>{line}</w:t></w:r></w:p>' for line in LINES)
    main = 'word/document.xml'
    return open_xml_package(main, {
        main: _MAIN_TYPES[suffix],
        'word/styles.xml': f'{STANDARD_TYPE}.wordprocessingml.styles+xml',
    }, {
        main: f'<w:document xmlns:w="{_WORD}"><w:body>{paragraphs}'
              '<w:sectPr><w:pgSz w:w="11906" w:h="16838"/></w:sectPr></w:body></w:document>',
        'word/styles.xml':
            f'<w:styles xmlns:w="{_WORD}"><w:docDefaults><w:rPrDefault><w:rPr>{fonts}'
            '</w:rPr></w:rPrDefault></w:docDefaults></w:styles>',
        'word/_rels/document.xml.rels': relationships(('styles', 'styles.xml')),
    })
