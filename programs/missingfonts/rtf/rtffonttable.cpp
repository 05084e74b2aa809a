#include "programs/missingfonts/rtf/rtffonttable.h"

#include <optional>
#include <utility>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "qtversion/qtversion.h"

namespace programs {

namespace {

/// The encodings of "\fcharset" numbers.
constexpr std::pair<int, const char *> encodings[] = {
    {128, "Shift_JIS"},    {129, "CP949"},        {134, "GB18030"},      {136, "Big5"},
    {161, "windows-1253"}, {162, "windows-1254"}, {163, "windows-1258"}, {177, "windows-1255"},
    {178, "windows-1256"}, {186, "windows-1257"}, {204, "windows-1251"}, {222, "windows-874"},
    {238, "windows-1250"}};

/// Older writers list a font once for each character set, with a suffix to its name.
constexpr std::pair<int, const char *> variantEndings[] = {
    {0, " Western"},    {161, " Greek"},  {162, " Tur"}, {163, " (Vietnamese)"}, {177, " (Hebrew)"},
    {178, " (Arabic)"}, {186, " Baltic"}, {204, " Cyr"}, {222, " (Thai)"},       {238, " CE"}};

/// @p name without the suffix for the character set.
QString withoutVariant(const QString &name, int characterSet)
{
    for (const auto &[number, text] : variantEndings) {
        const QLatin1String ending(text);
        if (number == characterSet && name.endsWith(ending, Qt::CaseInsensitive))
            return name.chopped(ending.size());
    }
    return name;
}

QString decoded(int characterSet, const std::string &text)
{
    const QByteArray bytes = QByteArray::fromStdString(text);
    for (const auto &[number, name] : encodings) {
        if (number == characterSet) {
            if (const std::optional<QString> found = qtversion::decoded(name, bytes))
                return *found;
        }
    }
    return qtversion::decoded("windows-1252", bytes).value_or(QString::fromLatin1(bytes));
}

} // namespace

void RtfFontTable::beginFont(int number)
{
    endFont();
    m_number = number;
}

void RtfFontTable::addByte(unsigned char byte, bool toAlternative)
{
    std::string &bytes = (toAlternative ? m_alternative : m_name).bytes;
    if (bytes.size() <= limits::familyNameBytes)
        bytes += static_cast<char>(byte);
}

void RtfFontTable::addCharacter(QChar character, bool toAlternative)
{
    Name &name = toAlternative ? m_alternative : m_name;
    name.decoded = take(name);
    if (name.decoded.size() <= static_cast<int>(limits::familyNameBytes))
        name.decoded += character;
}

QString RtfFontTable::take(Name &name) const
{
    const Name taken = std::exchange(name, {});
    return taken.decoded + decoded(m_characterSet, taken.bytes);
}

void RtfFontTable::endFont()
{
    const QString name = withoutVariant(take(m_name).trimmed(), m_characterSet);
    const QString alternative = take(m_alternative);
    if (m_number >= 0) {
        if (m_fonts.size() >= limits::families)
            throw DocumentError("the document's table of fonts is too long");
        const Family family = m_usage.family(name.toStdString());
        m_fonts[m_number] = family;
        m_usage.setAlternative(family, alternative.toStdString());
        if (m_embedded)
            m_usage.setEmbedded(family);
    }
    m_number = -1;
    m_characterSet = 0;
    m_embedded = false;
}

Family RtfFontTable::font(int number) const
{
    const auto found = m_fonts.find(number);
    return found == m_fonts.end() ? noFamily : found->second;
}

} // namespace programs
