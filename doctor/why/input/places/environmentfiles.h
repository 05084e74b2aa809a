#pragma once

#include "doctor/why/input/places/setting.h"

namespace doctor {

/// The settings in a file that pam_env reads as /etc/environment. Path and stage are left empty,
/// and so for the following.
QVector<Setting> settingsOfPlainFile(const QByteArray &content);
/// As pam_env.conf(5): NAME DEFAULT=… OVERRIDE=…
QVector<Setting> settingsOfPamFile(const QByteArray &content);
/// As environment.d(5).
QVector<Setting> settingsOfEnvironmentD(const QByteArray &content);
/// The locale in files of "NAME=value" lines such as locale.conf(5), and "[Group]" lines.
QVector<Setting> settingsOfLocaleFile(const QByteArray &content);

} // namespace doctor
