#include "fleet/compare/importance.h"

#include <QRegularExpression>
#include <QVector>

#include <algorithm>

#include "texts/texts.h"

namespace fleet {

namespace {

constexpr int leastHigh = 60;
constexpr int leastMedium = 30;

struct Rule
{
    const char *group;
    /// Of the name; empty for all of the group.
    const char *pattern;
    int rank;
    QString (*reason)();
};

// The first that fits counts.
constexpr Rule rules[] = {
    {"findings", "", 100, [] { return texts::tr("A check finds it on some of them only."); }},
    {"unknown", "", 25, [] { return texts::tr("It could not be looked at on some of them."); }},
    {"storage", "writable|room", 95,
     [] {
         return texts::tr("Without room or the right to write, settings and documents are lost.");
     }},
    {"storage", "", 40,
     [] { return texts::tr("Locks, names and rights work differently on other file systems."); }},
    {"environment",
     "^(SAL_|OOO_|LD_|QT_|GTK_|GDK_|XMODIFIERS|SDL_IM|GLFW_IM|CLUTTER_|MESA_|LIBGL_|__GL|"
     "UNO_|URE_|JAVA_|_JAVA|PYTHON|FONTCONFIG|FREETYPE|MALLOC_|G_SLICE|TMPDIR|NO_AT_BRIDGE)",
     90, [] { return texts::tr("This variable changes how programs load, draw or type."); }},
    {"environment", "^(XDG_|DESKTOP_SESSION|KDE_|GNOME_|PATH$)", 65,
     [] { return texts::tr("It decides which desktop, files and programs are used."); }},
    {"environment", "(_proxy|_PROXY)$", 55,
     [] { return texts::tr("Network connections take another way."); }},
    {"environment", "", 15, [] { return texts::tr("A variable that few programs read."); }},
    {"input", "running|verdict", 80,
     [] { return texts::tr("Typing in some languages depends on it."); }},
    {"input", "", 45, [] { return texts::tr("Another file sets the input method."); }},
    {"suite", ": (components|plug-ins)", 84,
     [] { return texts::tr("Kinds of documents, or the desktop's look, need this part."); }},
    {"suite", ": languages", 50, [] { return texts::tr("Menus and spelling need the language."); }},
    {"suite", "", 85,
     [] { return texts::tr("Another version reads, lays out and saves documents differently."); }},
    {"associations", "", 75,
     [] { return texts::tr("Documents of this kind open with another program."); }},
    {"suite-settings",
     "VCL|Skia|OpenCL|OpenGL|Accelerat|Java|Macro|Path|Font|Replacement|DisableUpdate|Locale|"
     "Printer|Security|Proxy|Load|Save|Recovery|Crash",
     70,
     [] { return texts::tr("The suite draws, loads or saves differently with this setting."); }},
    {"suite-settings", "", 35, [] { return texts::tr("A setting of the suite."); }},
    {"locale", "^(LC_ALL|LC_CTYPE|LANG)$", 72,
     [] { return texts::tr("Characters, language and formats follow it."); }},
    {"locale", "", 55, [] { return texts::tr("Formats, the time or the keys follow it."); }},
    {"packages", "^(libreoffice|ure|python3-uno|office-assistant|libofficeassistant)", 83,
     [] { return texts::tr("A part of the suite is missing or of another version."); }},
    {"packages", "^(fcitx|ibus|uim|scim|im-config|mozc|anthy|hime)", 62,
     [] { return texts::tr("Typing in some languages depends on it."); }},
    {"packages", "^(fonts-|ttf-|fontconfig|libfontconfig|libfreetype|libharfbuzz)", 60,
     [] { return texts::tr("Text looks different or breaks lines elsewhere."); }},
    {"packages",
     "^(mesa|nvidia|libgl|xserver|xwayland|mutter|kwin|weston|sway|libgtk|libqt|libcairo)", 52,
     [] { return texts::tr("It draws the windows."); }},
    {"packages", "^(cups|printer-driver|ghostscript|poppler|libcups)", 50,
     [] { return texts::tr("Printing depends on it."); }},
    {"packages", "^(hunspell|hyphen|mythes|aspell)", 45,
     [] { return texts::tr("Spelling and hyphenation depend on it."); }},
    {"packages", "", 30, [] { return texts::tr("A package of the desktop."); }},
    {"fonts", "", 58, [] { return texts::tr("Text looks different or breaks lines elsewhere."); }},
    {"system", "distribution", 68,
     [] { return texts::tr("Another release has other versions of everything."); }},
    {"system", "architecture", 66,
     [] { return texts::tr("Programs and extensions are built for one architecture."); }},
    {"system", "", 28, [] { return texts::tr("Drivers come with the kernel."); }},
    {"hardware", "graphics", 48, [] { return texts::tr("Other graphics need another driver."); }},
    {"hardware", "screens", 32,
     [] { return texts::tr("Sizes on the screen follow its resolution."); }},
    {"hardware", "memory", 29, [] { return texts::tr("Large documents need memory."); }},
    {"hardware", "", 10, [] { return texts::tr("Hardware seldom matters to documents."); }},
    {"desktop", "printer", 50, [] { return texts::tr("Pages are laid out for the printer."); }},
    {"desktop", "(?i)font|dpi|scale|antialias|hint|im-module", 42,
     [] { return texts::tr("Text and windows look different."); }},
    {"desktop", "", 20, [] { return texts::tr("A setting of the desktop."); }},
};

Weight weightOf(int rank)
{
    if (rank >= leastHigh)
        return Weight::High;
    return rank >= leastMedium ? Weight::Medium : Weight::Low;
}

/// The patterns of all rules, in their order.
const QVector<QRegularExpression> &patterns()
{
    static const QVector<QRegularExpression> all = [] {
        QVector<QRegularExpression> compiled;
        for (const Rule &rule : rules)
            compiled.append(QRegularExpression(QLatin1String(rule.pattern)));
        return compiled;
    }();
    return all;
}

bool fits(const Rule &rule, const QString &group, const QString &name)
{
    return group == QLatin1String(rule.group) &&
           patterns().at(static_cast<int>(&rule - rules)).match(name).hasMatch();
}

} // namespace

Importance importanceOf(const QString &group, const QString &name)
{
    const auto *const rule =
        std::find_if(std::begin(rules), std::end(rules),
                     [&](const Rule &candidate) { return fits(candidate, group, name); });
    if (rule == std::end(rules))
        return {0, Weight::Low, texts::tr("What it means is not known to this program.")};
    return {rule->rank, weightOf(rule->rank), rule->reason()};
}

} // namespace fleet
