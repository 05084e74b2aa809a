#pragma once

#include <QObject>

/// Finds out why typing through an input method might fail in the suite.
class InputChecker : public QObject
{
    Q_OBJECT

public:
    explicit InputChecker(QObject *parent = nullptr);
    ~InputChecker() override;
};
