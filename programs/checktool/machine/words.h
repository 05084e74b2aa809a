#pragma once

#include <QCoreApplication>

namespace standin {

/// What the check tool says is translated in one place.
class Words
{
    Q_DECLARE_TR_FUNCTIONS(CheckTool)
};

} // namespace standin
