#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextCodec>

#include "info/initext.h"
#include "tests/fuzz/fuzzing.h"

using fuzzing::require;

namespace {

QString decodedIn(const char *encoding, const QVariant &value)
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName(encoding));
    require(!OfficeAssiant::localIniText(value).contains(QChar(QChar::Null)));
    const QString text = OfficeAssiant::readableIniText(value);
    require(!text.contains(QChar(QChar::Null)));
    return text;
}

void decodeEverywhere(const QVariant &value)
{
    for (const char *encoding : {"UTF-8", "GB18030", "ISO-8859-1", "Shift_JIS"})
        decodedIn(encoding, value);
}

/// Reads the input as the INI file of another program.
void readAsFile(const QByteArray &content)
{
    const QTemporaryDir directory;
    require(directory.isValid());
    QFile file(directory.filePath(QStringLiteral("answer.ini")));
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    const QSettings settings(file.fileName(), QSettings::IniFormat);
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys)
        decodeEverywhere(settings.value(key));
}

} // namespace

/// The values of INI files that other programs wrote: the bytes of one value, and of a whole file
/// when they begin like one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = fuzzing::bytesOf(data, size);
    decodeEverywhere(QString::fromLatin1(bytes));
    decodeEverywhere(QString::fromUtf8(bytes));
    const QString plain = QString::fromUtf8(bytes);
    if (plain.toUtf8() == bytes && !bytes.contains('\0'))
        require(decodedIn("UTF-8", QString::fromLatin1(bytes)) == plain);
    if (bytes.startsWith('['))
        readAsFile(bytes);
    return 0;
}
