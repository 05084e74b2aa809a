#include <QApplication>

#include <cstdio>

#include "programs/eptools/addonreport.h"
#include "programs/eptools/addonwindow.h"
#include "programs/eptools/replacecommand.h"
#include "programs/eptools/replacewindow.h"
#include "texts/texts.h"

namespace {

constexpr int wrongUsage = 2;

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

template<typename Window>
int showWindow(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    Window window;
    window.show();
    return QApplication::exec();
}

} // namespace

/// Stands in for the suite's editing tool: "eptools -replacefile" replaces text in documents, in a
/// window, or from the terminal with more words; "eptools -apilog" shows LibreOffice's extensions
/// and macros, in a window or, without a display or with "--text", as text.
int main(int argc, char *argv[])
{
    texts::useLanguageOfUser();
    QStringList words;
    for (int n = 1; n < argc; ++n)
        words.append(QString::fromLocal8Bit(argv[n]));
    const QStringList asText(QStringLiteral("--text"));
    const QString task = words.isEmpty() ? QString() : words.takeFirst();
    if (task == QLatin1String("-replacefile")) {
        if (words.isEmpty() && hasDisplay())
            return showWindow<tools::ReplaceWindow>(argc, argv);
        return tools::replaceCommand(words);
    }
    if (task == QLatin1String("-apilog") && (words.isEmpty() || words == asText)) {
        if (words.isEmpty() && hasDisplay())
            return showWindow<tools::AddonWindow>(argc, argv);
        return tools::printAddonReport();
    }
    std::fprintf(stderr, "usage: eptools -replacefile [WORDS]\n       eptools -apilog [--text]\n");
    return wrongUsage;
}
