#include "programs/component/suiteprograms.h"

#include <QFileInfo>

namespace programs {

const QStringList &suitePrograms()
{
    static const QStringList programs = {
        QStringLiteral("vyr"),    QStringLiteral("tbl"),    QStringLiteral("shw"),
        QStringLiteral("vyrpdf"), QStringLiteral("fixed"),  QStringLiteral("chart"),
        QStringLiteral("board"),  QStringLiteral("docket"), QStringLiteral("vyroffice"),
    };
    return programs;
}

QString suiteProgramDirectory()
{
    return QStringLiteral("/opt/orvane/office");
}

QString installedProgram(const QString &directory, const QString &program)
{
    const QFileInfo file(directory + QLatin1Char('/') + program);
    return file.isFile() && file.isExecutable() ? file.filePath() : QString();
}

} // namespace programs
