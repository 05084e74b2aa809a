#include "doctor/editors/desktopdialect.h"
#include "doctor/editors/inidialect.h"
#include "doctor/editors/jsoneditor.h"
#include "doctor/editors/xcueditor.h"
#include "doctor/editors/xmleditor.h"

namespace doctor {

const KeyEditor &keyEditor(Format format)
{
    static const IniDialect iniDialect;
    static const DesktopDialect desktopDialect;
    static const SectionEditor ini(iniDialect);
    static const SectionEditor desktop(desktopDialect);
    static const JsonEditor json;
    static const XmlEditor xml;
    static const XcuEditor xcu;
    switch (format) {
    case Format::Ini:
        return ini;
    case Format::DesktopEntry:
        return desktop;
    case Format::Json:
        return json;
    case Format::Xml:
        return xml;
    case Format::Xcu:
        break;
    }
    return xcu;
}

} // namespace doctor
