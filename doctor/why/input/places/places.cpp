#include "doctor/why/input/places/places.h"

#include <QFileInfo>
#include <QMap>

#include "doctor/machine/filereading.h"
#include "doctor/why/input/places/environmentfiles.h"
#include "doctor/why/input/places/launcher.h"
#include "doctor/why/input/places/pamservices.h"
#include "doctor/why/input/places/settingcollector.h"

namespace doctor {

namespace {

constexpr int mostFiles = 1000;

bool isPlainShell(const QString &shell)
{
    const QString name = shell.section(QLatin1Char('/'), -1);
    return QStringList({QStringLiteral("sh"), QStringLiteral("bash"), QStringLiteral("dash"),
                        QStringLiteral("ksh")})
        .contains(name);
}

/// The places in the order in which a session reads them.
class Places
{
public:
    Places(const Machine &machine, const SessionKind &session)
        : m_machine(machine),
          m_session(session),
          m_home(machine.home()),
          m_account(accountOf(machine, machine.user)),
          m_collector(machine)
    {
    }

    Settings read(const Launch &launch)
    {
        readLogin();
        readEnvironmentD();
        readProfiles();
        readDisplayFiles();
        readInputConfig();
        readLaunch(launch, m_collector);
        return m_collector.result();
    }

private:
    bool exists(const QString &path) const { return QFileInfo::exists(m_machine.located(path)); }
    QString atHome(const char *name) const { return m_home + QLatin1String(name); }

    void readLogin()
    {
        const PamServices pam = pamServices(m_machine);
        m_collector.readFile(QStringLiteral("/etc/locale.conf"), Stage::Login, true,
                             &settingsOfLocaleFile);
        m_collector.readFile(QStringLiteral("/etc/security/pam_env.conf"), Stage::Login, true,
                             &settingsOfPamFile);
        m_collector.readFile(QStringLiteral("/etc/environment"), Stage::Login, true,
                             &settingsOfPlainFile);
        m_collector.readFile(QStringLiteral("/etc/default/locale"), Stage::Login,
                             pam.readsDefaultLocale, &settingsOfLocaleFile);
        if (pam.ofUser != PamServices::OfUser::Never)
            m_collector.readFile(atHome("/.pam_environment"), Stage::Login,
                                 pam.ofUser == PamServices::OfUser::Always, &settingsOfPamFile);
    }

    /// By name; of files with one name only that of the first directory counts.
    void readEnvironmentD()
    {
        QMap<QString, QString> files;
        for (const QString &directory :
             {atHome("/.config/environment.d/"), QStringLiteral("/etc/environment.d/"),
              QStringLiteral("/run/environment.d/"),
              QStringLiteral("/usr/local/lib/environment.d/"),
              QStringLiteral("/usr/lib/environment.d/")}) {
            const QStringList names =
                namesIn(m_machine.located(directory), mostFiles).value_or(QStringList());
            for (const QString &name : names) {
                if (name.endsWith(QLatin1String(".conf")) && !files.contains(name))
                    files.insert(name, directory + name);
            }
        }
        const bool isSure = m_session.isManaged || m_session.isGnome || m_session.isPlasma;
        for (const QString &path : qAsConst(files))
            m_collector.readFile(path, Stage::EnvironmentD, isSure, &settingsOfEnvironmentD);
    }

    void readProfiles()
    {
        const bool isSure = isPlainShell(m_account.shell);
        m_collector.readShell(QStringLiteral("/etc/profile"), Stage::Profile, isSure);
        QString ofBash;
        if (m_account.shell.endsWith(QLatin1String("/bash"))) {
            for (const char *name : {"/.bash_login", "/.bash_profile"}) {
                if (exists(atHome(name)))
                    ofBash = atHome(name);
            }
        }
        const bool isX11 = m_session.isX11();
        const bool isShell = !isX11 || m_session.displayManager == DisplayManager::Sddm;
        // Debian's start scripts read ~/.profile themselves.
        const bool isScript = isX11 && exists(QStringLiteral("/etc/X11/Xsession.d")) &&
                              (m_session.displayManager == DisplayManager::Gdm ||
                               m_session.displayManager == DisplayManager::LightDm);
        if (ofBash.isEmpty() || !isShell)
            m_collector.readShell(atHome("/.profile"), Stage::Profile,
                                  isSure && (ofBash.isEmpty() || isScript));
        if (!ofBash.isEmpty() && !isScript)
            m_collector.readShell(ofBash, Stage::Profile, isShell);
    }

    void readDisplayFiles()
    {
        if (m_session.isPlasma)
            m_collector.readFile(atHome("/.config/plasma-localerc"), Stage::Display, true,
                                 &settingsOfLocaleFile);
        if (m_session.hasWayland)
            return;
        const bool isKnown = m_session.displayManager != DisplayManager::Unknown;
        m_collector.readShell(QStringLiteral("/etc/xprofile"), Stage::Display,
                              isKnown && m_session.hasX11);
        m_collector.readShell(atHome("/.xprofile"), Stage::Display, isKnown && m_session.hasX11);
        if (exists(QStringLiteral("/etc/X11/Xsession.d/40x11-common_xsessionrc")))
            m_collector.readShell(atHome("/.xsessionrc"), Stage::Display, m_session.hasX11);
    }

    void readInputConfig()
    {
        const char *const reader =
            m_session.hasWayland ? "/etc/profile.d/im-config_wayland.sh"
            : exists(QStringLiteral("/etc/X11/Xsession.d/70im-config_launch"))
                ? "/etc/X11/Xsession.d/70im-config_launch"
                : "/etc/X11/xinit/xinitrc.d/50-xinput.sh";
        if (!exists(QLatin1String(reader)))
            return;
        const QString own = atHome("/.xinputrc");
        m_collector.readInputConfig(exists(own) ? own : QStringLiteral("/etc/X11/xinit/xinputrc"),
                                    m_session.hasWayland || m_session.hasX11);
    }

    const Machine &m_machine;
    const SessionKind &m_session;
    const QString m_home;
    const Account m_account;
    SettingCollector m_collector;
};

} // namespace

Settings inputSettings(const Machine &machine, const SessionKind &session, const Launch &launch)
{
    return Places(machine, session).read(launch);
}

} // namespace doctor
