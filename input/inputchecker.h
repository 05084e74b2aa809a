#pragma once

#include <QObject>
#include <QPair>
#include <QVector>

#include "input/inputsystem.h"

/// What the input checker can find; the numbers are fixed.
enum InputCheckError {
    ERR_OK = 0,
    /// Its message stands for every unlisted number; no check returns it.
    ERR_OTHER = 1,
    /// Qt has no plug-in for the input method that QT_IM_MODULE names.
    ERR_LOADPLUGIN_FAILED = 2,
    /// The daemon does not run, and XMODIFIERS and QT_IM_MODULE agree.
    ERR_NOT_RUNNING = 3,
    /// ibus runs, but the file with its bus address is missing.
    ERR_NOT_FIND_BUSCONFIG = 4,
    /// The daemon does not run, and XMODIFIERS names another input method than QT_IM_MODULE.
    ERR_INVALID_ENV_CONFIG = 5
};

/// Finds out why typing through an input method might fail in the suite.
///
/// Global, unlike the other helpers: the name is also the context of its translations.
class InputChecker : public QObject
{
    Q_OBJECT

public:
    explicit InputChecker(QObject *parent = nullptr);
    explicit InputChecker(const OfficeAssiant::InputSystem &system, QObject *parent = nullptr);
    ~InputChecker() override;

    /// Runs the diagnosis, adds it to the history and returns its message: the name of a code, or
    /// its translation.
    QString check();

    /// The id of the first process whose executable has that file name, or -1. Finds only processes
    /// whose executable this user may see.
    qint64 findProcessByName(const QString &name) const;

    /// The message of a code.
    static QString message(int code);

    /// Time and message of every check so far.
    const QVector<QPair<QString, QString>> &history() const;

private:
    InputCheckError diagnose() const;
    InputCheckError diagnoseFcitx() const;
    InputCheckError diagnoseIbus() const;
    bool isRunning(const QString &name) const;

    OfficeAssiant::InputSystem m_system;
    QVector<QPair<QString, QString>> m_checkHistory;
};
