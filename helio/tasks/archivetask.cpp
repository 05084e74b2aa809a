#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <array>

#include "helio/tasks/reporting.h"
#include "helio/tasks/running/placing.h"
#include "helio/tasks/running/taskprogram.h"
#include "helio/tasks/tasks.h"
#include "host/krt.h"
#include "texts/texts.h"

namespace helio {

namespace {

/// Readers of the archive find its members below the directory in which the suite collects them.
constexpr char collectingDirectory[] = "/tmp/archive";
constexpr char ending[] = ".tar.gz";
/// As the suite's own list of dumps.
constexpr char dumpNames[] = "(tbl|vyr|shw|vyrpdf|vyroffice)_\\d+.dmp";
constexpr char descriptionName[] = "describe.txt";
/// What the user typed, as it was typed.
constexpr char typedName[] = "description.txt";
constexpr char reportName[] = "sysinfo.txt";

/// A file of the suite, and what the description calls it.
struct SettingFile
{
    const char *name;
    const char *label;
};
/// Readers of the archive look for "oem.ini" in the description.
constexpr std::array<SettingFile, 4> installedFiles{{{"ome.ini", "oem.ini"},
                                                     {"feature.dat", "feature.dat"},
                                                     {"product.dat", "product.dat"},
                                                     {"setup.cfg", "setup.cfg"}}};

/// The members as links to what they hold, and their description.
class Collection
{
public:
    explicit Collection(const QString &directory) : m_directory(directory) {}

    QString path(const QString &name) const { return m_directory + QLatin1Char('/') + name; }
    QString fault() const { return m_fault; }

    /// A line of the description. Readers of the archive read line by line.
    void describe(const QString &label, const QString &text)
    {
        static const QRegularExpression blanks(QStringLiteral("[ \\t\\n]+"));
        const QString line = QString(text).replace(blanks, QStringLiteral(" "));
        m_description += (label + line).toUtf8() + '\n';
    }

    void add(const QString &file, const QString &name)
    {
        const QFileInfo source(file);
        if (!source.isFile() || !source.isReadable())
            m_fault = texts::tr("%1 is not there or cannot be read.").arg(file);
        else if (name.contains(QLatin1Char('/')) || !QFile::link(source.filePath(), path(name)))
            m_fault = texts::tr("Two files of the archive would have the name %1.").arg(name);
    }

    void writeDescription() { write(descriptionName, m_description); }

    void write(const char *name, const QByteArray &content)
    {
        QFile file(path(QLatin1String(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) < 0 || !file.flush())
            m_fault = file.errorString();
    }

private:
    QString m_directory;
    QByteArray m_description;
    QString m_fault;
};

void addSuiteSettings(Collection &collection)
{
    const QString settings = QDir::homePath() + QStringLiteral("/.config/Orvane/Office.conf");
    if (QFileInfo(settings).isFile()) {
        collection.add(settings, QStringLiteral("Office.conf"));
        collection.describe(QStringLiteral("file:"), QStringLiteral("Office.conf"));
    }
    const QString installed =
        krt::dirs::resources(QStringLiteral(""), nullptr) + QStringLiteral("/cfgs/");
    for (const SettingFile &file : installedFiles) {
        const QString name = QLatin1String(file.name);
        if (!QFileInfo(installed + name).isFile())
            continue;
        collection.add(installed + name, name);
        collection.describe(QStringLiteral("file:"), QLatin1String(file.label));
    }
}

void addDumps(Collection &collection)
{
    static const QRegularExpression dump{QLatin1String(dumpNames)};
    const QDir directory(krt::dirs::orvaneHome() + QStringLiteral("/tmp/dump"));
    const QFileInfoList files = directory.entryInfoList(QDir::Files | QDir::Hidden);
    for (const QFileInfo &file : files) {
        if (!dump.match(file.fileName()).hasMatch())
            continue;
        collection.add(file.filePath(), file.fileName());
        collection.describe(QStringLiteral("dumpfile: "), file.filePath());
    }
}

TaskEnd collect(const TaskRun &run, Collection &collection)
{
    const QString name = QString(run.file).remove(
        QRegularExpression(QRegularExpression::escape(QLatin1String(ending)) + QLatin1Char('$')));
    collection.describe(QStringLiteral("name: "), name);
    collection.describe(QStringLiteral("type: "), run.text("type"));
    collection.describe(QStringLiteral("describe: "), run.text("description"));
    const QJsonArray files = run.arguments.value(QStringLiteral("files")).toArray();
    for (const QJsonValue &file : files) {
        const QString path = file.toObject().value(QStringLiteral("path")).toString();
        collection.add(path, file.toObject().value(QStringLiteral("name")).toString());
        collection.describe(QStringLiteral("attachfile: "), path);
    }
    if (run.arguments.value(QStringLiteral("report")).toBool()) {
        TaskEnd reported = reportedTo(run, collection.path(QLatin1String(reportName)));
        if (reported.kind != TaskEnd::Kind::Done)
            return reported;
        collection.describe(QStringLiteral("file:"), QLatin1String(reportName));
    }
    if (run.arguments.value(QStringLiteral("settings")).toBool())
        addSuiteSettings(collection);
    if (run.arguments.value(QStringLiteral("dumps")).toBool())
        addDumps(collection);
    if (run.text("description").contains(QLatin1Char('\n')))
        collection.write(typedName, run.text("description").toUtf8());
    collection.writeDescription();
    return collection.fault().isEmpty() ? TaskEnd() : TaskEnd::failed(collection.fault());
}

/// Packs what stands below @p top, and lets tar read the archive to its end.
TaskEnd pack(const TaskRun &run, const QString &archive, const QString &top, const QString &member)
{
    const QString tar = QStringLiteral("tar");
    for (const QStringList &arguments :
         {QStringList{QStringLiteral("--force-local"), QStringLiteral("--dereference"),
                      QStringLiteral("-czf"), archive, QStringLiteral("-C"), top,
                      QStringLiteral("--"), member},
          QStringList{QStringLiteral("--force-local"), QStringLiteral("-tzf"), archive}}) {
        const ProgramResult packed = runProgram({tar, arguments}, run.isCancelled);
        if (packed.isCancelled)
            return TaskEnd::cancelled();
        if (!packed.fault.isEmpty())
            return TaskEnd::failed(packed.fault);
    }
    return {};
}

} // namespace

TaskEnd tasks::buildArchive(const TaskRun &run)
{
    const QString home = krt::dirs::orvaneHome();
    // Disks have more room than the directory of temporary files, which may be memory.
    QTemporaryDir beside(home + QStringLiteral("/.archive-XXXXXX"));
    QTemporaryDir elsewhere;
    const QString work = beside.isValid() ? beside.path() : elsewhere.path();
    const QString top = work + QStringLiteral("/top");
    const QString member = (home + QLatin1String(collectingDirectory)).mid(1);
    Collection collection(top + QLatin1Char('/') + member);
    if (!QDir().mkpath(collection.path(QString())))
        return TaskEnd::failed(texts::tr("%1 cannot be written: %2")
                                   .arg(top, texts::tr("there is no room for temporary files")));
    TaskEnd end = collect(run, collection);
    const QString archive = work + QStringLiteral("/archive") + QLatin1String(ending);
    if (end.kind == TaskEnd::Kind::Done)
        end = pack(run, archive, top, member);
    if (end.kind != TaskEnd::Kind::Done)
        return end;
    end.reason = placed(archive, run.file);
    if (!end.reason.isEmpty())
        return TaskEnd::failed(end.reason);
    end.file = run.file;
    // An archive that is open in another program is not what one attaches or uploads.
    end.toOpen = QFileInfo(run.file).path();
    end.isToOpen = true;
    return end;
}

} // namespace helio
