#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include "tests/fuzz/fuzzing.h"
#include "update/configchange.h"
#include "update/kupdatehelp.h"

using namespace OfficeAssiant;
using fuzzing::require;

namespace {

/// An updater's configuration with a group that no change concerns.
class Configuration
{
public:
    Configuration()
    {
        qunsetenv("HELIO_UPDATE_CFG");
        require(m_directory.isValid());
        QFile file(path());
        require(file.open(QIODevice::WriteOnly) &&
                file.write("[update]\n\n[other]\nkept=yes\n") > 0);
    }

    QString directory() const { return m_directory.path() + QLatin1Char('/'); }
    QString path() const { return directory() + QStringLiteral("vyrupdate.cfg"); }

    bool isOtherGroupKept() const
    {
        const QSettings settings(path(), QSettings::IniFormat);
        return settings.value(QStringLiteral("other/kept")).toString() == QLatin1String("yes");
    }

private:
    QTemporaryDir m_directory;
};

} // namespace

/// A change of the updater's configuration as the page sends it, then the configuration that it
/// leaves.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString input = fuzzing::textOf(data, size);
    const auto change = parseConfigChange(input);
    require(change.has_value() == (input.count(QLatin1Char('$')) == 1));
    if (!change)
        return 0;
    require(change->key + QLatin1Char('$') + change->value == input);
    const Configuration configuration;
    const KUpdateHelp updater(configuration.directory());
    updater.setConfigValue(change->key, change->value);
    require(updater.readConfig().has_value());
    require(configuration.isOtherGroupKept());
    return 0;
}
