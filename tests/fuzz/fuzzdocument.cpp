#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <QString>

#include <sys/mman.h>
#include <unistd.h>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/documentfonts.h"
#include "programs/missingfonts/ooxml/drawing/themefonts.h"
#include "programs/missingfonts/ooxml/sheet/sheetcells.h"
#include "programs/missingfonts/ooxml/slide/presentationproperties.h"
#include "programs/missingfonts/ooxml/slide/slidetemplate.h"
#include "programs/missingfonts/ooxml/slide/slidetext.h"
#include "programs/missingfonts/ooxml/word/wordfonttable.h"
#include "programs/missingfonts/ooxml/word/wordnumbering.h"
#include "programs/missingfonts/ooxml/word/wordsettings.h"
#include "programs/missingfonts/ooxml/word/wordstyles.h"
#include "programs/missingfonts/ooxml/word/wordtext.h"
#include "programs/missingfonts/package/archivepackage.h"
#include "programs/missingfonts/xml/xmlscanner.h"

namespace {

/// Reads the input as the file that a user chose.
void readAsFile(std::string_view input)
{
    const int descriptor = memfd_create("document", 0);
    if (descriptor < 0 ||
        write(descriptor, input.data(), input.size()) != static_cast<ssize_t>(input.size()))
        std::abort();
    try {
        programs::documentFonts(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
    } catch (const programs::DocumentError &) {
        // as it should be
    }
    close(descriptor);
}

/// Every reader of a part, with all of them reading the same part.
class PartReaders
{
public:
    void read(std::string_view input)
    {
        programs::WordText wordText(m_usage, m_wordContext);
        programs::SlideText slide(m_usage, m_slideContext, programs::SlideText::Placeholders::Read);
        programs::SheetCells cells(m_workbook);
        const std::initializer_list<programs::XmlHandler *> handlers = {
            &m_theme,    &m_styles,     &m_numbering,       &m_settings,         &m_fontTable,
            &m_template, &m_properties, &m_workbook.styles, &m_workbook.strings, &wordText,
            &slide,      &cells};
        for (programs::XmlHandler *handler : handlers)
            readWith(*handler, input);
    }

private:
    void readWith(programs::XmlHandler &handler, std::string_view input)
    {
        try {
            programs::XmlScanner scanner(handler);
            constexpr std::size_t blockBytes = 61;
            for (; !input.empty(); input.remove_prefix(std::min(blockBytes, input.size())))
                scanner.feed(input.data(), std::min(blockBytes, input.size()));
            scanner.finish();
            m_styles.resolve();
        } catch (const programs::DocumentError &) {
            // as it should be
        }
    }

    programs::FontUsage m_usage;
    programs::ThemeFonts m_theme{m_usage};
    programs::WordStyles m_styles{m_usage};
    programs::WordNumbering m_numbering{m_usage};
    programs::WordSettings m_settings;
    programs::WordFontTable m_fontTable{m_usage};
    programs::WordContext m_wordContext{m_styles, m_numbering, m_theme, m_settings};
    programs::SlideTemplate m_template{m_usage};
    programs::PresentationProperties m_properties{m_usage};
    programs::SlideContext m_slideContext{m_theme, m_properties.defaultTextStyle(), m_template,
                                          m_template};
    programs::Workbook m_workbook{m_usage};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char *>(data), size);
    readAsFile(input);
    if (!input.empty() && input.front() == '<')
        PartReaders().read(input);
    return 0;
}
