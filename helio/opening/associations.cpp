#include "helio/opening/associations.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QSaveFile>
#include <QUrl>

#include <algorithm>

#include "texts/texts.h"

namespace helio {

namespace {

constexpr char gio[] = "gio";
constexpr char sampleName[] = "/vyr.";
constexpr char addressPrefix[] = "uri: ";
constexpr char typePrefix[] = "  standard::content-type: ";
constexpr char typePackage[] = ":/config/Override.xml";
constexpr char entrySuffix[] = ".desktop";

QString dataFolder(const doctor::Machine &machine)
{
    return machine.located(machine.variable(QStringLiteral("XDG_DATA_HOME")).value_or(QString()));
}

QString configFolder(const doctor::Machine &machine)
{
    return machine.located(machine.variable(QStringLiteral("XDG_CONFIG_HOME")).value_or(QString()));
}

/// The types by the paths of the files.
QHash<QString, QString> typesOf(const QByteArray &output)
{
    QHash<QString, QString> types;
    QString file;
    const QList<QByteArray> lines = output.split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(addressPrefix))
            file = QUrl::fromEncoded(line.mid(int(qstrlen(addressPrefix)))).toLocalFile();
        else if (line.startsWith(typePrefix))
            types.insert(file, QString::fromUtf8(line.mid(int(qstrlen(typePrefix)))));
    }
    return types;
}

/// The entry in the first line, "Default application for “a/b”: c.desktop".
QString entryIn(const QByteArray &output)
{
    const QString line = QString::fromUtf8(output).section(QLatin1Char('\n'), 0, 0);
    const int mark = line.lastIndexOf(QLatin1String(": "));
    return mark > 0 && line.endsWith(QLatin1String(entrySuffix)) ? line.mid(mark + 2) : QString();
}

AssociationReading ended(const DesktopAnswer &answer)
{
    return {answer.isCancelled, answer.fault, {}};
}

AssociationReading withEntries(AssociationReading reading, const AskDesktop &ask)
{
    QHash<QString, QString> entries;
    for (Association &row : reading.rows) {
        if (!row.type.isEmpty() && !entries.contains(row.type)) {
            const DesktopAnswer answer =
                ask(QLatin1String(gio), {QStringLiteral("mime"), row.type});
            // It may fail where nothing opens the type, but says so.
            if (answer.isCancelled || (!answer.fault.isEmpty() && answer.output.isEmpty()))
                return ended(answer);
            entries.insert(row.type, entryIn(answer.output));
        }
        row.entry = entries.value(row.type);
    }
    return reading;
}

QString notWritten(const QFileDevice &file)
{
    return texts::tr("%1 cannot be written: %2").arg(file.fileName(), file.errorString());
}

/// @return why it is not there, for people
QString copied(const QString &source, const QString &folder)
{
    if (!QDir().mkpath(folder))
        return texts::tr("the folder cannot be made: %1").arg(folder);
    QFile original(source);
    if (!original.open(QIODevice::ReadOnly))
        return texts::tr("%1 cannot be read: %2").arg(source, original.errorString());
    const QByteArray content = original.readAll();
    QFile there(folder + QLatin1Char('/') + source.section(QLatin1Char('/'), -1));
    if (there.open(QIODevice::ReadOnly) && there.readAll() == content)
        return {};
    QSaveFile file(there.fileName());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        return notWritten(file);
    return {};
}

bool needsTypes(const OpeningSuite &suite, const QVector<Association> &rows)
{
    return std::any_of(rows.begin(), rows.end(),
                       [&suite](const Association &row) { return !suite.knows(row.type); });
}

/// Installs the types of the suite's documents for this user.
DesktopAnswer installTypes(const doctor::Machine &machine, const AskDesktop &ask)
{
    const QString folder = dataFolder(machine) + QStringLiteral("/mime");
    DesktopAnswer answer;
    answer.fault = copied(QLatin1String(typePackage), folder + QStringLiteral("/packages"));
    return answer.fault.isEmpty() ? ask(QStringLiteral("update-mime-database"), {folder}) : answer;
}

/// Makes the suite's entries known to the desktop.
QString registerEntries(const OpeningSuite &suite, const doctor::Machine &machine)
{
    for (const QString &file : suite.unregistered) {
        const QString fault = copied(file, dataFolder(machine) + QStringLiteral("/applications"));
        if (!fault.isEmpty())
            return fault;
    }
    // gio makes the list, but not always its folder.
    const QString folder = configFolder(machine);
    return QDir().mkpath(folder) ? QString()
                                 : texts::tr("the folder cannot be made: %1").arg(folder);
}

AssociationReading wanted(AssociationReading reading, const QStringList &suffixes)
{
    const auto isOther = [&suffixes](const Association &row) {
        return !suffixes.isEmpty() && !suffixes.contains(row.kind.suffix);
    };
    reading.rows.erase(std::remove_if(reading.rows.begin(), reading.rows.end(), isOther),
                       reading.rows.end());
    return reading;
}

bool isOver(const AssociationReading &reading)
{
    return reading.isCancelled || !reading.fault.isEmpty();
}

/// Names an entry for each row that opens with another one.
DesktopAnswer assign(const OpeningSuite &suite, const QVector<Association> &rows,
                     const AskDesktop &ask)
{
    for (const Association &row : rows) {
        if (row.type.isEmpty() || suite.opensWith(row.kind, row.entry))
            continue;
        const QString entry = suite.entries.value(row.kind.entry).value(0);
        const DesktopAnswer answer =
            ask(QLatin1String(gio), {QStringLiteral("mime"), row.type, entry});
        if (answer.isCancelled || !answer.fault.isEmpty())
            return answer;
    }
    return {};
}

} // namespace

AssociationReading readAssociations(const QString &samples, const AskDesktop &ask)
{
    AssociationReading reading;
    QStringList arguments{QStringLiteral("info"), QStringLiteral("-a"),
                          QStringLiteral("standard::content-type")};
    for (const DocumentKind &kind : documentKinds()) {
        const QString sample = samples + QLatin1String(sampleName) + kind.suffix;
        if (!QFile::exists(sample))
            continue;
        reading.rows.append({kind, {}, {}});
        arguments.append(sample);
    }
    if (reading.rows.isEmpty())
        return reading;
    const DesktopAnswer answer = ask(QLatin1String(gio), arguments);
    if (answer.isCancelled || !answer.fault.isEmpty())
        return ended(answer);
    const QHash<QString, QString> types = typesOf(answer.output);
    if (types.isEmpty())
        return {false, texts::tr("gio does not tell the types of documents."), {}};
    for (Association &row : reading.rows)
        row.type = types.value(samples + QLatin1String(sampleName) + row.kind.suffix);
    return withEntries(reading, ask);
}

AssociationReading repairAssociations(const OpeningSuite &suite, const QString &samples,
                                      const QStringList &suffixes, const doctor::Machine &machine,
                                      const AskDesktop &ask)
{
    if (suite.id.isEmpty())
        return {false, texts::tr("No office suite is installed."), {}};
    AssociationReading before = wanted(readAssociations(samples, ask), suffixes);
    if (isOver(before))
        return before;
    if (needsTypes(suite, before.rows)) {
        const DesktopAnswer installed = installTypes(machine, ask);
        if (installed.isCancelled || !installed.fault.isEmpty())
            return ended(installed);
        before = wanted(readAssociations(samples, ask), suffixes);
        if (isOver(before))
            return before;
    }
    const QString fault = registerEntries(suite, machine);
    if (!fault.isEmpty())
        return {false, fault, {}};
    const DesktopAnswer assigned = assign(suite, before.rows, ask);
    return assigned.isCancelled || !assigned.fault.isEmpty() ? ended(assigned)
                                                             : readAssociations(samples, ask);
}

} // namespace helio
