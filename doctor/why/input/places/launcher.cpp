#include "doctor/why/input/places/launcher.h"

#include <QFileInfo>
#include <QList>

#include "doctor/editors/keyeditor.h"
#include "doctor/machine/filereading.h"
#include "doctor/why/input/places/shelllexer.h"

namespace doctor {

namespace {

constexpr int longestFirstLine = 128;

QVector<QByteArray> wordsOf(const QByteArray &command)
{
    QVector<QByteArray> words;
    ShellLexer lexer(command);
    for (ShellToken token = lexer.next(); token.kind == ShellToken::Kind::Word;
         token = lexer.next())
        words.append(token.text);
    return words;
}

/// The program behind "env" and what it sets.
QByteArray programOf(const QVector<QByteArray> &words)
{
    for (const QByteArray &word : words) {
        if (word != "env" && !word.endsWith("/env") && !word.startsWith('-') && !word.contains('='))
            return word;
    }
    return {};
}

QString located(const QByteArray &program, const Machine &machine)
{
    QString name = QString::fromLocal8Bit(program);
    if (name.isEmpty() || name.startsWith(QLatin1Char('/')))
        return name;
    for (const QString &directory :
         {machine.home() + QStringLiteral("/.local/bin/"), QStringLiteral("/usr/local/bin/"),
          QStringLiteral("/usr/bin/"), QStringLiteral("/bin/")}) {
        if (QFileInfo(machine.located(directory + name)).isFile())
            return directory + name;
    }
    return {};
}

bool isShellScript(const QString &path, const Machine &machine)
{
    const QByteArray start =
        readPart(machine.located(path), 0, longestFirstLine).content.value_or(QByteArray());
    const QByteArray line = start.split('\n').constFirst();
    return line.startsWith("#!") && line.contains("sh") && !line.contains("csh") &&
           !line.contains("fish");
}

/// Returns the script that the line runs; empty if it runs none.
QString readEntry(const QString &entry, SettingCollector &collector)
{
    const std::optional<QByteArray> content = collector.content(entry, Stage::Launcher);
    if (!content)
        return {};
    const std::optional<FoundKey> line =
        keyEditor(Format::DesktopEntry)
            .find(*content, {QStringLiteral("Desktop Entry"), QStringLiteral("Exec")});
    if (!line)
        return {};
    const QByteArray command = line->value.toUtf8();
    collector.readScript("exec " + command, entry, line->line);
    const QVector<QByteArray> words = wordsOf(command);
    const QByteArray program = programOf(words);
    const int inner = words.indexOf("-c");
    if (inner >= 0 && program.endsWith("sh"))
        collector.readScript(words.value(inner + 1), entry, line->line);
    const QString path = located(program, collector.machine());
    return isShellScript(path, collector.machine()) ? path : QString();
}

} // namespace

void readLaunch(const Launch &launch, SettingCollector &collector)
{
    QStringList scripts = launch.scripts;
    if (!launch.entry.isEmpty()) {
        const QString script = readEntry(launch.entry, collector);
        if (!script.isEmpty() && !scripts.contains(script))
            scripts.prepend(script);
    }
    for (const QString &script : qAsConst(scripts))
        collector.readShell(script, Stage::Launcher, true);
}

} // namespace doctor
