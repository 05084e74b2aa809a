#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <array>
#include <optional>

namespace doctor {

/// The variables that choose an input method or its language.
constexpr std::array<const char *, 6> inputVariables{
    "GTK_IM_MODULE", "QT_IM_MODULE", "XMODIFIERS", "SDL_IM_MODULE", "GLFW_IM_MODULE", "LANG"};

bool isInputVariable(const QByteArray &name);

/// When a place is read, earlier ones first. Each can replace what the ones before it set.
enum class Stage {
    Login,        ///< PAM: pam_env, /etc/environment, the locale
    EnvironmentD, ///< environment.d of system and user
    Profile,      ///< what a login shell reads
    Display,      ///< what starts an X11 session
    InputConfig,  ///< xinputrc and im-config
    Launcher,     ///< the desktop entry's Exec line and a script that starts the program
};

/// A line that gives a variable a value or takes it away.
struct Setting
{
    QByteArray variable;
    /// Nothing if it is computed when the line is read.
    std::optional<QByteArray> value;
    bool isRemoved = false;
    /// False where the text alone does not tell whether the line takes effect.
    bool isSure = true;
    Stage stage = Stage::Login;
    QString path;
    /// From 1; 0 for a file that could not be read.
    int line = 0;
};

} // namespace doctor
