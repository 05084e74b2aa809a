#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <functional>

namespace ctl {

/// The options that every question of "why" takes.
struct WhyOptions
{
    /// @param fixText what --fix does for this question
    explicit WhyOptions(const QString &fixText);

    QCommandLineOption fix;
    QCommandLineOption yes;
    QCommandLineOption dryRun;
    QCommandLineOption json;
    QCommandLineOption help;

    QList<QCommandLineOption> all() const { return {fix, yes, dryRun, json, help}; }
};

/// What those options say.
struct WhyFlags
{
    /// What is wrong with the arguments; empty if nothing is. Nothing else counts then.
    QString fault;
    bool wantsHelp = false;
    bool json = false;
    bool fix = false;
    bool yes = false;
    bool dryRun = false;
};

/// Parses the arguments. The question's @p own options and its words are left to @p readOwn, which
/// returns what is wrong with them and is not called for help.
WhyFlags parseWhy(const QStringList &arguments, const WhyOptions &options,
                  const QList<QCommandLineOption> &own,
                  const std::function<QString(const QCommandLineParser &)> &readOwn);

} // namespace ctl
