#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QString>
#include <QtGlobal>

#include <optional>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#else
#include <QStringDecoder>
#include <QTemporaryFile>

#include <cctype>
#endif

#ifdef QT_WEBENGINEWIDGETS_LIB
#include <QWebEngineView>
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QWebEngineContextMenuData>
#include <QWebEngineDownloadItem>
#else
#include <QWebEngineContextMenuRequest>
#include <QWebEngineDownloadRequest>
#endif
#endif

/// What Qt 5.15 and Qt 6 have under different names, or only one of them has.
namespace qtversion {

/// The text of bytes in that encoding; nothing if Qt does not know it.
inline std::optional<QString> decoded(const char *encoding, const QByteArray &bytes)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    const QTextCodec *codec = QTextCodec::codecForName(encoding);
    return codec ? std::optional(codec->toUnicode(bytes)) : std::nullopt;
#else
    QStringDecoder decoder(encoding);
    return decoder.isValid() ? std::optional<QString>(decoder(bytes)) : std::nullopt;
#endif
}

/// The text of UTF-8 that may end within a character.
inline QString wholeCharacters(const QByteArray &bytes)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QTextDecoder(QTextCodec::codecForName("UTF-8")).toUnicode(bytes);
#else
    return QStringDecoder(QStringDecoder::Utf8)(bytes);
#endif
}

/// Nothing if the bytes are not valid in the locale's encoding, which is always UTF-8 for Qt 6.
inline std::optional<QString> decodedLocally(const QByteArray &bytes)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTextCodec::ConverterState state;
    const QString text =
        QTextCodec::codecForLocale()->toUnicode(bytes.constData(), bytes.size(), &state);
    const bool isValid = state.invalidChars == 0 && state.remainingChars == 0;
#else
    const QString text = QString::fromUtf8(bytes);
    const bool isValid = text.toUtf8() == bytes;
#endif
    return isValid ? std::optional(text) : std::nullopt;
}

inline void useUtf8ForLocale()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
}

/// Has an INI file read and written as UTF-8.
inline void useUtf8(QSettings &file)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    file.setIniCodec("UTF-8");
#else
    Q_UNUSED(file)
#endif
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
namespace detail {

/// Qt 6 takes an INI file for UTF-8 where Qt 5 makes a character of every byte.
inline bool readIni(QIODevice &device, QSettings::SettingsMap &values)
{
    const QByteArray content = device.readAll();
    QTemporaryFile copy;
    // A byte order mark says UTF-8 to either.
    const bool isUtf8 = content.startsWith("\xef\xbb\xbf");
    if (!copy.open() || copy.write(isUtf8 ? content : QString::fromLatin1(content).toUtf8()) < 0 ||
        !copy.flush())
        return false;
    const QSettings file(copy.fileName(), QSettings::IniFormat);
    const QStringList keys = file.allKeys();
    for (const QString &key : keys)
        values.insert(key, file.value(key));
    return true;
}

/// What is not ASCII in Qt 6's values, as Qt 5 escapes it: with any digit behind it.
inline QByteArray escapedIni(const QString &written)
{
    QByteArray content;
    bool isBehindEscape = false;
    for (const QChar character : written) {
        const ushort code = character.unicode();
        isBehindEscape = code >= 0x7f || (isBehindEscape && code < 0x7f && std::isxdigit(code));
        content +=
            isBehindEscape ? "\\x" + QByteArray::number(code, 16) : QByteArray(1, char(code));
    }
    return content;
}

inline bool writeIni(QIODevice &device, const QSettings::SettingsMap &values)
{
    QTemporaryFile copy;
    if (!copy.open())
        return false;
    QSettings file(copy.fileName(), QSettings::IniFormat);
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        file.setValue(value.key(), value.value());
    file.sync();
    QFile written(copy.fileName());
    if (file.status() != QSettings::NoError || !written.open(QIODevice::ReadOnly))
        return false;
    const QByteArray content = escapedIni(QString::fromUtf8(written.readAll()));
    return device.write(content) == content.size();
}

} // namespace detail
#endif

/// INI files of the suite, whose own Qt 5 makes a character of every byte and escapes what is not
/// ASCII.
inline QSettings::Format suiteIni()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QSettings::IniFormat;
#else
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("conf"), detail::readIni, detail::writeIni);
    return format;
#endif
}

/// The same where the file is found by the names of organization and application.
inline QSettings::Format suiteConf()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QSettings::NativeFormat;
#else
    return suiteIni();
#endif
}

/// A pattern matches only where the search begins.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
constexpr auto matchAtOffset = QRegularExpression::AnchoredMatchOption;
#else
constexpr auto matchAtOffset = QRegularExpression::AnchorAtOffsetMatchOption;
#endif

/// A program that prepares its own process just before it takes it over.
class PreparedProcess : public QProcess
{
public:
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    PreparedProcess()
    {
        setChildProcessModifier([this] { prepare(); });
    }
#endif

protected:
    /// Called between fork and exec. A program that starts detached may have it called or not.
    virtual void prepare() = 0;

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
private:
    void setupChildProcess() final
    {
        prepare();
    }
#endif
};

/// Sizes and pictures fit the resolution of each screen, as is always so with Qt 6.
inline void scaleWithScreens()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

#ifdef QT_WEBENGINEWIDGETS_LIB
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
using ContextMenu = QWebEngineContextMenuData;
using Download = QWebEngineDownloadItem;
/// Debian's package with Chromium's helper program.
constexpr char chromiumPackage[] = "libqt5webenginecore5";
#else
using ContextMenu = QWebEngineContextMenuRequest;
using Download = QWebEngineDownloadRequest;
constexpr char chromiumPackage[] = "libqt6webenginecore6-bin";
#endif

/// Qt 6 refuses a local page its own scripts without that right, Qt 5 only what a script asks for.
constexpr bool localPagesNeedFileAccess = QT_VERSION >= QT_VERSION_CHECK(6, 0, 0);

/// What the latest context menu was asked for on; null if none was.
inline const ContextMenu *contextMenuOf(const QWebEngineView &view)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return &view.page()->contextMenuData();
#else
    return view.lastContextMenuRequest();
#endif
}
#endif

} // namespace qtversion
