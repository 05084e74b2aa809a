#include "helio/shell/desktoplook.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QPalette>
#include <QTranslator>

#include "helio/shell/shelloptions.h"
#include "texts/texts.h"

namespace {

constexpr char english[] = "en";
constexpr int middleLightness = 128;

QString desktopTheme()
{
    const QColor ground = QGuiApplication::palette().color(QPalette::Window);
    return ground.lightness() < middleLightness ? QStringLiteral("dark") : QStringLiteral("light");
}

QString desktopLanguage()
{
    const QLocale locale(QLocale::system().uiLanguages().value(0));
    return locale.language() == QLocale::C ? QLatin1String(english) : locale.name();
}

} // namespace

helio::PageSurroundings shell::desktopLook(const ShellOptions &options)
{
    return {options.theme.isEmpty() ? desktopTheme() : options.theme,
            options.language.isEmpty() ? desktopLanguage() : options.language};
}

void shell::useLanguage(const QString &language)
{
    texts::useLanguage(language);
    if (language.startsWith(QLatin1String(english)))
        return;
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(QLocale(language), QStringLiteral("qtbase"), QStringLiteral("_"),
                         QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(translator);
}
