#include <QProcess>

#include <random>

#include "doctor/why/input/places/environmentfiles.h"
#include "tests/doctor/why/input/inputmachine.h"

using doctor::InputReport;
using doctor::Origin;

/// The readers of places against the programs that really read them.
class InputReadersTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_machine.clear(); }
    void bashSetsWhatTheReaderSays();
    void systemdSetsWhatTheReaderSays();

private:
    /// The value of QT_IM_MODULE behind each script.
    QVector<QByteArray> takenByBash(int count) const;

    InputMachine m_machine;
};

QVector<QByteArray> InputReadersTest::takenByBash(int count) const
{
    QProcess bash;
    bash.setWorkingDirectory(m_machine.located(QStringLiteral("/scripts")));
    bash.start(
        QStringLiteral("/bin/bash"),
        {QStringLiteral("-c"),
         QStringLiteral("unset QT_IM_MODULE; for ((i = 0; i < $0; i++)); do (. ./$i >/dev/null "
                        "2>&1; printenv QT_IM_MODULE || echo); done"),
         QString::number(count)});
    // A longer run takes its time.
    if (!bash.waitForFinished(30000 + 20 * count))
        return {};
    QVector<QByteArray> values;
    for (const QByteArray &line : bash.readAllStandardOutput().split('\n'))
        values.append(line);
    values.removeLast();
    return values;
}

/// Each value is the number of its line, so that bash tells which line it took.
void InputReadersTest::bashSetsWhatTheReaderSays()
{
    const QVector<QByteArray> lines{
        "export QT_IM_MODULE=@",
        "QT_IM_MODULE=@",
        "export QT_IM_MODULE",
        "unset QT_IM_MODULE",
        "if true; then export QT_IM_MODULE=@; fi",
        "if false; then export QT_IM_MODULE=@; fi",
        "f() { export QT_IM_MODULE=@; return; }",
        "f",
        "[ -n \"$NONE\" ] && export QT_IM_MODULE=@",
        "[ -z \"$NONE\" ] || export QT_IM_MODULE=@",
        "(export QT_IM_MODULE=@)",
        "{ export QT_IM_MODULE=@; }",
        "QT_IM_MODULE=@ true",
        "export OTHER=1 \"QT_IM_MODULE=\"@",
        "export QT_IM_MODULE='@' 2>/dev/null",
        "export QT_IM_MODULE=@ | cat",
        "export QT_IM_MODULE=@ &",
        "cat >/dev/null <<END\nexport QT_IM_MODULE=@\nEND",
        "echo 'export\nQT_IM_MODULE=@'",
        "case a in a) export QT_IM_MODULE=@;; b|c) true;; esac",
        "for i in 1 2; do export QT_IM_MODULE=@; done",
        "X=$(echo \")\" ; export QT_IM_MODULE=@)",
        "[[ a == a && b == b ]] && export QT_IM_MODULE=@",
        "set -a",
        "set +a",
        "[ -z x ] && return",
        "# export QT_IM_MODULE=@",
        "true \\\n  && export QT_IM_MODULE=@",
        "declare -x QT_IM_MODULE=@; true",
        "export -n QT_IM_MODULE",
        "eval 'export QT_IM_MODULE=@'",
        "return",
    };
    std::mt19937 random(7);
    const auto drawn = [&random](int below) { return int(random() % unsigned(below)); };
    const int count = qEnvironmentVariableIsSet("WHY_INPUT_SCRIPTS")
                          ? qEnvironmentVariableIntValue("WHY_INPUT_SCRIPTS")
                          : 200;
    QVector<QByteArray> scripts;
    for (int i = 0; i < count; ++i) {
        QByteArray script;
        for (int left = 1 + drawn(6); left > 0; --left) {
            QByteArray line = lines.at(drawn(lines.size()));
            const int at = line.split('@').constFirst().count('\n');
            script += line.replace('@', QByteArray::number(script.count('\n') + 1 + at)) + '\n';
        }
        m_machine.write(QStringLiteral("/scripts/%1").arg(i), script);
        scripts.append(script);
    }
    const QVector<QByteArray> values = takenByBash(count);
    QCOMPARE(values.size(), count);
    int decided = 0;
    for (int i = 0; i < count; ++i) {
        const QByteArray &value = values.at(i);
        const QByteArray shown = scripts.at(i) + "took " + value;
        m_machine.write(QStringLiteral("/home/tester/.profile"), scripts.at(i));
        m_machine.addProgram("DISPLAY=:0" + (value.isEmpty() ? "" : " QT_IM_MODULE=" + value));
        const InputReport report = m_machine.why(program);
        const Origin &origin = report.named("QT_IM_MODULE")->origin;
        if (origin.state == Origin::State::Line && !value.isEmpty()) {
            QVERIFY2(origin.lines.constFirst().line == value.toInt(), shown.constData());
            ++decided;
        }
        // A line that sets something for certain does set it. What eval runs is not read.
        QVERIFY2(shown.contains("eval") || !origin.contradiction || !origin.lines.isEmpty(),
                 shown.constData());
    }
    QVERIFY2(decided > count / 5, qPrintable(QString::number(decided)));
}

void InputReadersTest::systemdSetsWhatTheReaderSays()
{
    const QString generator = QStringLiteral(
        "/usr/lib/systemd/user-environment-generators/30-systemd-environment-d-generator");
    if (!QFile::exists(generator))
        QSKIP("systemd is not here");
    const QString path = QStringLiteral("/home/tester/.config/environment.d/a.conf");
    for (const char *text :
         {"GTK_IM_MODULE=a", "GTK_IM_MODULE=\"a b\"", "GTK_IM_MODULE='a'b", "GTK_IM_MODULE=a  ",
          "  GTK_IM_MODULE=a", "#GTK_IM_MODULE=a", ";GTK_IM_MODULE=a", "GTK_IM_MODULE=a#b",
          "GTK_IM_MODULE=a\\\nb", "export GTK_IM_MODULE=a", "GTK_IM_MODULE=\"a\\\"b\"",
          "GTK_IM_MODULE=a\\ b", "GTK_IM_MODULE=a\nGTK_IM_MODULE=b", "GTK_IM_MODULE = a"}) {
        m_machine.write(path, QByteArray(text) + '\n');
        QProcess process;
        process.setProcessEnvironment([this] {
            QProcessEnvironment environment;
            environment.insert(QStringLiteral("HOME"), m_machine.located(InputMachine::home()));
            return environment;
        }());
        process.start(generator, {});
        QVERIFY(process.waitForFinished());
        QByteArray real;
        for (const QByteArray &line : process.readAllStandardOutput().split('\n')) {
            if (line.startsWith("GTK_IM_MODULE="))
                real = line.mid(14);
        }
        const QVector<doctor::Setting> read =
            doctor::settingsOfEnvironmentD(QByteArray(text) + '\n');
        QByteArray ours = read.isEmpty() ? QByteArray() : read.last().value.value_or("?");
        // It quotes what a shell would take apart.
        if (real.startsWith("$'"))
            real = real.mid(2, real.size() - 3).replace("\\\"", "\"");
        else if (real.startsWith('"'))
            real = real.mid(1, real.size() - 2).replace("\\\"", "\"");
        QVERIFY2(ours == real,
                 (QByteArray(text) + ": " + ours + ", but really " + real).constData());
    }
}

QTEST_GUILESS_MAIN(InputReadersTest)
#include "tst_inputreaders.moc"
