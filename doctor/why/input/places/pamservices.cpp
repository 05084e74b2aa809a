#include "doctor/why/input/places/pamservices.h"

#include <array>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr qint64 largestService = 64 * 1024;
constexpr std::array<const char *, 11> services{
    "common-session", "gdm-autologin",     "gdm-password", "greetd",
    "lightdm",        "lightdm-autologin", "login",        "sddm-autologin",
    "sddm",           "system-auth",       "system-login"};

} // namespace

PamServices pamServices(const Machine &machine)
{
    int readers = 0;
    int ofUser = 0;
    PamServices found;
    for (const char *service : services) {
        const FileContent file =
            readFile(machine.located(QStringLiteral("/etc/pam.d/") + QLatin1String(service)),
                     largestService);
        bool reads = false;
        bool readsUser = false;
        for (const QByteArray &line : file.content.value_or(QByteArray()).split('\n')) {
            if (line.trimmed().startsWith('#') || !line.contains("pam_env.so"))
                continue;
            reads = true;
            readsUser = readsUser || line.contains("user_readenv=1");
            found.readsDefaultLocale =
                found.readsDefaultLocale || line.contains("envfile=/etc/default/locale");
        }
        readers += reads ? 1 : 0;
        ofUser += readsUser ? 1 : 0;
    }
    if (ofUser > 0)
        found.ofUser =
            ofUser == readers ? PamServices::OfUser::Always : PamServices::OfUser::Sometimes;
    return found;
}

} // namespace doctor
