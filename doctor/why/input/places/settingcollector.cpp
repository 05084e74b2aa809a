#include "doctor/why/input/places/settingcollector.h"

#include <QFileInfo>

#include <algorithm>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr qint64 largestFile = 1024 * 1024;
constexpr int mostFiles = 300;
constexpr int deepest = 8;
constexpr char systemProfile[] = "/etc/profile";

/// Where links lead, so that a line has one name only.
QString realPath(const Machine &machine, const QString &path)
{
    const QString canonical = QFileInfo(machine.located(path)).canonicalFilePath();
    const QString root = QFileInfo(machine.root).canonicalFilePath();
    if (canonical.isEmpty() || (!machine.root.isEmpty() && !canonical.startsWith(root)))
        return path;
    return machine.root.isEmpty() ? canonical : canonical.mid(root.size());
}

/// What the names of frameworks in xinputrc stand for; empty for those that decide at run time.
QByteArray moduleOf(const QByteArray &framework)
{
    if (framework == "fcitx5")
        return "fcitx";
    for (const char *known : {"fcitx", "ibus", "uim", "hime", "gcin"}) {
        if (framework == known)
            return framework;
    }
    return {};
}

} // namespace

std::optional<QByteArray> SettingCollector::content(const QString &path, Stage stage)
{
    const QFileInfo file(m_machine.located(path));
    if (!file.exists() || m_files >= mostFiles)
        return std::nullopt;
    ++m_files;
    const FileContent read = doctor::readFile(file.filePath(), largestFile);
    const bool isMask = file.canonicalFilePath() == QLatin1String("/dev/null");
    if (read.content || isMask)
        return read.content;
    m_result.unread.append({path, read.problem});
    // Programs of the user cannot read it either.
    if (stage != Stage::Login && !file.isReadable())
        return std::nullopt;
    for (const char *variable : inputVariables)
        m_result.all.append({variable, {}, false, false, stage, path, 0});
    return std::nullopt;
}

void SettingCollector::add(const Source &source, const Setting &setting)
{
    Setting placed = setting;
    placed.path = source.path;
    placed.stage = source.stage;
    placed.isSure = setting.isSure && source.isSure;
    m_result.all.append(placed);
}

void SettingCollector::readFile(const QString &path, Stage stage, bool isSure,
                                QVector<Setting> (*parse)(const QByteArray &))
{
    const std::optional<QByteArray> text = content(path, stage);
    if (!text)
        return;
    const Source source{realPath(m_machine, path), stage, isSure, 0};
    for (const Setting &setting : parse(*text))
        add(source, setting);
}

void SettingCollector::readShell(const QString &path, Stage stage, bool isSure)
{
    readShell(Source{path, stage, isSure, 0});
}

void SettingCollector::readShell(const Source &source)
{
    const std::optional<QByteArray> script = content(source.path, source.stage);
    if (!script || source.depth > deepest)
        return;
    Source real = source;
    real.path = realPath(m_machine, source.path);
    for (const ShellStatement &statement : shellStatements(*script))
        take(real, statement);
    // Where the loop over that directory was not recognised.
    if (source.path == QLatin1String(systemProfile) && script->contains("/etc/profile.d"))
        readProfileD(source);
}

void SettingCollector::take(const Source &source, const ShellStatement &statement)
{
    using Kind = ShellStatement::Kind;
    switch (statement.kind) {
    case Kind::Assign:
        assign(source, statement);
        break;
    case Kind::Export:
        exportPending(source, statement);
        break;
    case Kind::Remove:
        m_pending.remove(statement.name);
        if (isInputVariable(statement.name))
            add(source, {statement.name, {}, true, statement.isCertain, {}, {}, statement.line});
        break;
    case Kind::ForCommand:
        if (source.stage == Stage::Launcher && isInputVariable(statement.name))
            add(source, {statement.name,
                         statement.value,
                         false,
                         statement.isCertain && statement.isExported,
                         {},
                         {},
                         statement.line});
        break;
    case Kind::Read:
        follow(source, statement);
        break;
    case Kind::Command:
        if (source.stage == Stage::InputConfig && statement.name == "run_im")
            takeFramework(source, statement);
        break;
    }
}

void SettingCollector::assign(const Source &source, const ShellStatement &statement)
{
    if (!isInputVariable(statement.name))
        return;
    Setting setting{statement.name, statement.value, false,         statement.isCertain,
                    source.stage,   source.path,     statement.line};
    setting.isSure = setting.isSure && source.isSure;
    const std::optional<bool> isKnown = isSet(statement.name);
    const bool isExported = statement.isExported || source.stage == Stage::InputConfig;
    if (!isExported && isKnown == std::optional(false)) {
        m_pending.insert(statement.name, setting);
        return;
    }
    setting.isSure = setting.isSure && (isExported || isKnown.has_value());
    m_pending.remove(statement.name);
    m_result.all.append(setting);
}

void SettingCollector::exportPending(const Source &source, const ShellStatement &statement)
{
    const auto pending = m_pending.constFind(statement.name);
    if (pending == m_pending.constEnd())
        return;
    Setting setting = *pending;
    setting.isSure = setting.isSure && statement.isCertain && source.isSure;
    m_result.all.append(setting);
}

void SettingCollector::follow(const Source &source, const ShellStatement &statement)
{
    if (!statement.value) {
        if (source.path == QLatin1String(systemProfile))
            readProfileD(source);
        return;
    }
    QString path = QString::fromLocal8Bit(*statement.value);
    if (path.startsWith(QLatin1String("~/")))
        path = m_machine.home() + path.mid(1);
    // Others are looked for in the directories of programs.
    if (path.startsWith(QLatin1Char('/')))
        readShell(
            Source{path, source.stage, source.isSure && statement.isCertain, source.depth + 1});
}

void SettingCollector::readProfileD(const Source &profile)
{
    if (std::exchange(m_hasReadProfileD, true))
        return;
    const QString directory = QStringLiteral("/etc/profile.d/");
    const QStringList names =
        namesIn(m_machine.located(directory), mostFiles).value_or(QStringList());
    for (const QString &name : names) {
        if (name.endsWith(QLatin1String(".sh")))
            readShell(Source{directory + name, profile.stage, profile.isSure, profile.depth + 1});
    }
}

void SettingCollector::readInputConfig(const QString &path, bool isSure)
{
    readShell(Source{path, Stage::InputConfig, isSure, 0});
}

void SettingCollector::takeFramework(const Source &source, const ShellStatement &statement)
{
    const QByteArray framework = statement.value.value_or(QByteArray());
    if (framework == "none")
        return;
    const QByteArray module = moduleOf(framework);
    bool isSure = statement.isCertain && !module.isEmpty();
    // im-config keeps its hands off where one of them is set.
    for (const char *variable : {"XMODIFIERS", "GTK_IM_MODULE", "QT_IM_MODULE"}) {
        const std::optional<bool> isKnown = isSet(variable);
        if (isKnown.value_or(false))
            return;
        isSure = isSure && isKnown.has_value();
    }
    for (const char *variable : {"XMODIFIERS", "GTK_IM_MODULE", "QT_IM_MODULE"}) {
        std::optional<QByteArray> value;
        if (!module.isEmpty())
            value = (qstrcmp(variable, "XMODIFIERS") == 0 ? "@im=" : "") + module;
        add(source, {variable, value, false, isSure, {}, {}, statement.line});
    }
}

void SettingCollector::readScript(const QByteArray &script, const QString &path, int line)
{
    const Source source{path, Stage::Launcher, true, 0};
    for (ShellStatement statement : shellStatements(script)) {
        statement.line = line;
        take(source, statement);
    }
}

std::optional<bool> SettingCollector::isSet(const QByteArray &variable) const
{
    bool isPerhapsSet = false;
    bool isPerhapsRemoved = false;
    for (auto one = m_result.all.crbegin(); one != m_result.all.crend(); ++one) {
        if (one->variable != variable)
            continue;
        const bool isDoubted = one->isRemoved ? isPerhapsSet : isPerhapsRemoved;
        if (one->isSure)
            return isDoubted ? std::nullopt : std::optional(!one->isRemoved);
        (one->isRemoved ? isPerhapsRemoved : isPerhapsSet) = true;
    }
    return isPerhapsSet ? std::nullopt : std::optional(false);
}

} // namespace doctor
