"""PowerPoint presentations in Office Open XML: .pptx, .pptm, .ppsx, .potx, .potm."""

from openxml import DOCUMENT, open_xml_package, relationships, STANDARD_TYPE
from texts import CHINESE_FONT, LATIN_FONT, LINES

_SLIDES = 'http://schemas.openxmlformats.org/presentationml/2006/main'
_DRAWING = 'http://schemas.openxmlformats.org/drawingml/2006/main'
_NAMES = f'xmlns:a="{_DRAWING}" xmlns:p="{_SLIDES}" xmlns:r="{DOCUMENT}"'
_MAIN_TYPES = {
    'pptx': f'{STANDARD_TYPE}.presentationml.presentation.main+xml',
    'ppsx': f'{STANDARD_TYPE}.presentationml.slideshow.main+xml',
    'potx': f'{STANDARD_TYPE}.presentationml.template.main+xml',
    'pptm': 'application/vnd.ms-powerpoint.presentation.macroEnabled.main+xml',
    'potm': 'application/vnd.ms-powerpoint.template.macroEnabled.main+xml',
}
_GROUP = ('<p:nvGrpSpPr><p:cNvPr id="1" name=""/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr>'
          '<p:grpSpPr/>')
_COLORS = {
    'dk1': '000000', 'lt1': 'FFFFFF', 'dk2': '44546A', 'lt2': 'E7E6E6', 'accent1': '4472C4',
    'accent2': 'ED7D31', 'accent3': 'A5A5A5', 'accent4': 'FFC000', 'accent5': '5B9BD5',
    'accent6': '70AD47', 'hlink': '0563C1', 'folHlink': '954F72',
}
_COLOR_MAP = ('<p:clrMap bg1="lt1" tx1="dk1" bg2="lt2" tx2="dk2" accent1="accent1"'
              ' accent2="accent2" accent3="accent3" accent4="accent4" accent5="accent5"'
              ' accent6="accent6" hlink="hlink" folHlink="folHlink"/>')


def _theme():
    colors = ''.join(f'<a:{name}><a:srgbClr val="{value}"/></a:{name}>'
                     for name, value in _COLORS.items())
    fonts = f'<a:latin typeface="{LATIN_FONT}"/><a:ea typeface="{CHINESE_FONT}"/>' \
            '<a:cs typeface=""/>'
    fill = '<a:solidFill><a:schemeClr val="phClr"/></a:solidFill>'
    line = f'<a:ln w="6350">{fill}</a:ln>'
    effect = '<a:effectStyle><a:effectLst/></a:effectStyle>'
    return (f'<a:theme xmlns:a="{_DRAWING}" name="Sample"><a:themeElements>'
            f'<a:clrScheme name="Sample">{colors}</a:clrScheme>'
            f'<a:fontScheme name="Sample"><a:majorFont>{fonts}</a:majorFont>'
            f'<a:minorFont>{fonts}</a:minorFont></a:fontScheme>'
            f'<a:fmtScheme name="Sample"><a:fillStyleLst>{fill * 3}</a:fillStyleLst>'
            f'<a:lnStyleLst>{line * 3}</a:lnStyleLst>'
            f'<a:effectStyleLst>{effect * 3}</a:effectStyleLst>'
            f'<a:bgFillStyleLst>{fill * 3}</a:bgFillStyleLst></a:fmtScheme>'
            '</a:themeElements></a:theme>')


def _text_box():
    paragraphs = ''.join(f'<a:p><a:r><a:rPr lang="en-US"/><a:t>{line}</a:t></a:r></a:p>'
                         for line in LINES)
    return ('<p:sp><p:nvSpPr><p:cNvPr id="2" name="Text"/><p:cNvSpPr txBox="1"/><p:nvPr/>'
            '</p:nvSpPr><p:spPr><a:xfrm><a:off x="914400" y="914400"/>'
            '<a:ext cx="10363200" cy="2286000"/></a:xfrm>'
            '<a:prstGeom prst="rect"><a:avLst/></a:prstGeom></p:spPr>'
            f'<p:txBody><a:bodyPr/>{paragraphs}</p:txBody></p:sp>')


def _slide_like(element, shapes, behind):
    return (f'<p:{element} {_NAMES}><p:cSld><p:spTree>{_GROUP}{shapes}</p:spTree></p:cSld>'
            f'{behind}</p:{element}>')


def _presentation():
    return (f'<p:presentation {_NAMES}>'
            '<p:sldMasterIdLst><p:sldMasterId id="2147483648" r:id="rId1"/></p:sldMasterIdLst>'
            '<p:sldIdLst><p:sldId id="256" r:id="rId2"/></p:sldIdLst>'
            '<p:sldSz cx="12192000" cy="6858000"/><p:notesSz cx="6858000" cy="9144000"/>'
            '</p:presentation>')


def open_presentation(suffix):
    kind = f'{STANDARD_TYPE}.presentationml'
    main = 'ppt/presentation.xml'
    master, layout = 'ppt/slideMasters/slideMaster1.xml', 'ppt/slideLayouts/slideLayout1.xml'
    slide, theme = 'ppt/slides/slide1.xml', 'ppt/theme/theme1.xml'
    own_map = '<p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr>'
    layouts = '<p:sldLayoutIdLst><p:sldLayoutId id="2147483649" r:id="rId1"/></p:sldLayoutIdLst>'
    return open_xml_package(main, {
        main: _MAIN_TYPES[suffix],
        master: f'{kind}.slideMaster+xml',
        layout: f'{kind}.slideLayout+xml',
        slide: f'{kind}.slide+xml',
        theme: f'{STANDARD_TYPE}.theme+xml',
    }, {
        main: _presentation(),
        master: _slide_like('sldMaster', '', _COLOR_MAP + layouts),
        layout: _slide_like('sldLayout', '', own_map),
        slide: _slide_like('sld', _text_box(), own_map),
        theme: _theme(),
        'ppt/_rels/presentation.xml.rels': relationships(
            ('slideMaster', 'slideMasters/slideMaster1.xml'), ('slide', 'slides/slide1.xml'),
            ('theme', 'theme/theme1.xml')),
        'ppt/slideMasters/_rels/slideMaster1.xml.rels': relationships(
            ('slideLayout', '../slideLayouts/slideLayout1.xml'),
            ('theme', '../theme/theme1.xml')),
        'ppt/slideLayouts/_rels/slideLayout1.xml.rels': relationships(
            ('slideMaster', '../slideMasters/slideMaster1.xml')),
        'ppt/slides/_rels/slide1.xml.rels': relationships(
            ('slideLayout', '../slideLayouts/slideLayout1.xml')),
    })
