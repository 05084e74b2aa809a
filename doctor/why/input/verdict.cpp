#include "doctor/why/input/verdict.h"

#include <algorithm>

#include "doctor/why/input/connection.h"
#include "texts/texts.h"

namespace doctor {

namespace {

QString shown(const QByteArray &text)
{
    return QString::fromLocal8Bit(text);
}

bool isAnyOf(const QByteArray &word, std::initializer_list<const char *> words)
{
    return std::any_of(words.begin(), words.end(),
                       [&word](const char *one) { return word == one; });
}

/// Looks for the first cause.
class Judge
{
public:
    Judge(const Machine &machine, InputReport &report) : m_machine(machine), m_report(report) {}

    void judge()
    {
        m_report.cause = InputCause::None;
        const bool hasWindow = m_report.toolkit.kind != Toolkit::Kind::None ||
                               m_report.process.session.hasX11 ||
                               m_report.process.session.hasWayland;
        if (!hasWindow)
            m_report.text = texts::tr("The process has no connection to a display, so nothing is "
                                      "typed into it.");
        else if (m_report.isProcess)
            judgeProcess();
        else
            judgeSession();
    }

private:
    void found(InputCause cause, const QString &text)
    {
        m_report.cause = cause;
        m_report.text = text;
    }

    /// Chinese, Japanese, Korean.
    bool needsInputMethod() const
    {
        for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
            const QByteArray locale = m_report.value(name);
            if (!locale.isEmpty())
                return isAnyOf(locale.left(2), {"zh", "ja", "ko"});
        }
        return false;
    }

    bool isOnWayland() const
    {
        const Toolkit &toolkit = m_report.toolkit;
        if (toolkit.kind == Toolkit::Kind::Qt && (toolkit.isOnWayland || toolkit.isOnX11))
            return toolkit.isOnWayland;
        if (toolkit.kind == Toolkit::Kind::Gtk && m_report.value("GDK_BACKEND").startsWith("x11"))
            return false;
        return m_report.process.session.hasWayland;
    }

    QByteArray variableOfToolkit() const
    {
        switch (m_report.toolkit.kind) {
        case Toolkit::Kind::Qt:
            return "QT_IM_MODULE";
        case Toolkit::Kind::Gtk:
            return "GTK_IM_MODULE";
        case Toolkit::Kind::None:
            break;
        }
        return "XMODIFIERS";
    }

    /// The input method that a variable names.
    QByteArray moduleIn(const QByteArray &variable) const
    {
        const QByteArray value = m_report.value(variable);
        if (variable == "XMODIFIERS") {
            const int begin = value.indexOf("@im=");
            return begin < 0 ? QByteArray() : value.mid(begin + 4).split('@').constFirst();
        }
        const Toolkit &toolkit = m_report.toolkit;
        if (toolkit.kind == Toolkit::Kind::Gtk && value.isEmpty())
            return gtkModuleOfSettings(m_report.process, toolkit, m_machine.home());
        const QByteArray several = m_report.value("QT_IM_MODULES");
        const bool isNewQt = toolkit.kind == Toolkit::Kind::Qt && toolkit.major == 6 &&
                             toolkit.minor >= 7 && !several.isEmpty();
        const QByteArray first =
            isNewQt ? several.split(';').constFirst() : value.split(':').constFirst();
        // Qt does not mind the case.
        const QByteArray module = variable == "QT_IM_MODULE" ? first.toLower() : first;
        return module == "xim" ? moduleIn("XMODIFIERS") : module;
    }

    static QByteArray familyOf(const QByteArray &module)
    {
        return module == "fcitx5" ? QByteArray("fcitx") : module;
    }

    static bool isNoMethod(const QByteArray &module)
    {
        return isAnyOf(module, {"", "none", "compose", "simple", "gtk-im-context-simple", "local"});
    }

    /// "QT_IM_MODULE=fcitx (/etc/environment:3)"
    QString assignment(const QByteArray &variable) const
    {
        QString text = shown(variable + '=' + m_report.value(variable));
        const InputVariable *known = m_report.named(variable);
        if (!known || known->origin.state != Origin::State::Line)
            return text;
        return QStringLiteral("%1 (%2)").arg(text, placeText(known->origin.lines.constFirst()));
    }

    void judgeProcess()
    {
        const QByteArray variable = variableOfToolkit();
        const QByteArray module = moduleIn(variable);
        if (isAnyOf(module, {"wayland", "waylandgtk"}))
            m_report.text = texts::tr("The process gets its input from the Wayland compositor.");
        else if (isNoMethod(module))
            judgeUntold(variable);
        else if (judgeRunning(variable, familyOf(module)))
            judgePlugin(variable, module);
    }

    /// No variable names an input method.
    void judgeUntold(const QByteArray &variable)
    {
        if (m_report.frameworks.isEmpty()) {
            judgeWithoutFramework();
            return;
        }
        const Framework &running = m_report.frameworks.constFirst();
        // Desktops start ibus for everybody.
        const bool isMeant = needsInputMethod() || running.module != "ibus";
        if (isUsed(running.module) || !isMeant) {
            m_report.text =
                texts::tr("Nothing is wrong: %1 is running, and the process does not need "
                          "to be told.")
                    .arg(shown(running.name));
            return;
        }
        m_report.variable = variable;
        m_report.wanted = (variable == "XMODIFIERS" ? "@im=" : "") + running.module;
        if (m_report.value(variable).isEmpty())
            found(
                InputCause::VariableMissing,
                texts::tr("%1 is running, but %2 is not set in the process, so it does not use it.")
                    .arg(shown(running.name), shown(variable)));
        else
            found(InputCause::VariableMissing,
                  texts::tr("%1 is running, but %2 keeps the process from using it.")
                      .arg(shown(running.name), assignment(variable)));
    }

    /// Whether the toolkit takes an input method without a variable.
    bool isUsed(const QByteArray &module) const
    {
        const Toolkit &toolkit = m_report.toolkit;
        for (const QString &plugin : toolkit.plugins) {
            if (plugin.contains(QString::fromLatin1(module)))
                return true;
        }
        if (!m_report.value(variableOfToolkit()).isEmpty())
            return false;
        if (isOnWayland()) {
            // GNOME's and most other compositors speak a newer protocol than Qt 5.
            const bool isOld = toolkit.kind == Toolkit::Kind::Qt && toolkit.major < 6;
            return !isOld || m_report.process.session.isPlasma;
        }
        return toolkit.kind == Toolkit::Kind::Gtk &&
               isUsualModule(m_report.process, toolkit, module, m_report.value("LANG"));
    }

    void judgeWithoutFramework()
    {
        if (needsInputMethod())
            found(
                InputCause::NoneInstalled,
                texts::tr("No input method is running, but the language of the session needs one: "
                          "install and start fcitx5 or ibus."));
        else
            m_report.text = texts::tr(
                "Nothing is wrong: no input method is set up, and the language needs none.");
    }

    /// Returns true if what is named runs, or is none that is known.
    bool judgeRunning(const QByteArray &variable, const QByteArray &family)
    {
        const bool isKnown = isAnyOf(family, {"fcitx", "ibus"});
        if (!isKnown || frameworkFor(m_machine, m_report, family))
            return true;
        m_report.variable = variable;
        if (m_report.frameworks.isEmpty()) {
            found(InputCause::NotRunning, texts::tr("%1, but %2 is not running: start it.")
                                              .arg(assignment(variable), shown(family)));
            return false;
        }
        const Framework &other = m_report.frameworks.constFirst();
        m_report.wanted = (variable == "XMODIFIERS" ? "@im=" : "") + other.module;
        found(InputCause::OtherRunning, texts::tr("%1, but %2 is running instead.")
                                            .arg(assignment(variable), shown(other.name)));
        return false;
    }

    void judgePlugin(const QByteArray &variable, const QByteArray &module)
    {
        const bool isXim = m_report.value(variable) == "xim";
        if (m_report.toolkit.kind != Toolkit::Kind::None && !isXim) {
            m_report.plugin = pluginOf(m_report.process, m_report.toolkit, module);
            const Fault fault = pluginFault(m_report, module);
            if (fault.cause != InputCause::None) {
                m_report.variable = variable;
                found(fault.cause, fault.text);
                return;
            }
        }
        judgeWay(familyOf(module));
    }

    void judgeWay(const QByteArray &family)
    {
        const Fault fault = connectionFault(m_machine, m_report, family);
        found(fault.cause, fault.text);
        if (fault.cause == InputCause::None)
            m_report.text =
                texts::tr("Nothing is wrong: %1 is running and connected as it should be.")
                    .arg(shown(nameOf(family)));
    }

    QByteArray nameOf(const QByteArray &family) const
    {
        const Framework *const framework = frameworkFor(m_machine, m_report, family);
        return framework ? framework->name : family;
    }

    void judgeSession()
    {
        QByteArray first;
        for (const char *variable : {"GTK_IM_MODULE", "QT_IM_MODULE", "XMODIFIERS"}) {
            const QByteArray family = familyOf(moduleIn(variable));
            if (isNoMethod(family) || family.startsWith("wayland"))
                continue;
            if (!judgeRunning(variable, family))
                return;
            if (!first.isEmpty() && familyOf(moduleIn(first)) != family) {
                m_report.variable = variable;
                found(InputCause::VariablesDiffer,
                      texts::tr("The session names two input methods: %1, %2.")
                          .arg(assignment(first), assignment(variable)));
                return;
            }
            if (first.isEmpty())
                first = variable;
        }
        if (first.isEmpty())
            judgeUntold(isOnWayland() ? "QT_IM_MODULE" : "XMODIFIERS");
        else
            judgeWay(familyOf(moduleIn(first)));
    }

    const Machine &m_machine;
    InputReport &m_report;
};

} // namespace

void decide(const Machine &machine, InputReport &report)
{
    Judge(machine, report).judge();
}

} // namespace doctor
