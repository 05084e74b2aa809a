"""Excel workbooks in Office Open XML: .xlsx, .xlsm, .xltx, .xltm."""

from openxml import DOCUMENT, open_xml_package, relationships, STANDARD_TYPE
from texts import LATIN_FONT, LINES, TITLE

_SHEET = 'http://schemas.openxmlformats.org/spreadsheetml/2006/main'
_MAIN_TYPES = {
    'xlsx': f'{STANDARD_TYPE}.spreadsheetml.sheet.main+xml',
    'xlsm': 'application/vnd.ms-excel.sheet.macroEnabled.main+xml',
    'xltx': f'{STANDARD_TYPE}.spreadsheetml.template.main+xml',
    'xltm': 'application/vnd.ms-excel.template.macroEnabled.main+xml',
}


def _rows():
    texts = ''.join(
        f'<row r="{at}"><c r="A{at}" t="inlineStr"><is><t>{line}</t></is></c></row>'
        for at, line in enumerate(LINES, 1))
    last = len(LINES) + 1
    return f'{texts}<row r="{last}"><c r="A{last}"><v>39</v></c></row>'


def _styles():
    return (f'<styleSheet xmlns="{_SHEET}">'
            f'<fonts count="1"><font><sz val="11"/><name val="{LATIN_FONT}"/></font></fonts>'
            '<fills count="2"><fill><patternFill patternType="none"/></fill>'
            '<fill><patternFill patternType="gray125"/></fill></fills>'
            '<borders count="1"><border/></borders>'
            '<cellStyleXfs count="1"><xf/></cellStyleXfs>'
            '<cellXfs count="1"><xf xfId="0"/></cellXfs></styleSheet>')


def open_workbook(suffix):
    main = 'xl/workbook.xml'
    return open_xml_package(main, {
        main: _MAIN_TYPES[suffix],
        'xl/worksheets/sheet1.xml': f'{STANDARD_TYPE}.spreadsheetml.worksheet+xml',
        'xl/styles.xml': f'{STANDARD_TYPE}.spreadsheetml.styles+xml',
    }, {
        main: f'<workbook xmlns="{_SHEET}" xmlns:r="{DOCUMENT}"><sheets>'
              f'<sheet name="{TITLE}" sheetId="1" r:id="rId1"/></sheets></workbook>',
        'xl/worksheets/sheet1.xml':
            f'<worksheet xmlns="{_SHEET}"><sheetData>{_rows()}</sheetData></worksheet>',
        'xl/styles.xml': _styles(),
        'xl/_rels/workbook.xml.rels': relationships(
            ('worksheet', 'worksheets/sheet1.xml'), ('styles', 'styles.xml')),
    })
