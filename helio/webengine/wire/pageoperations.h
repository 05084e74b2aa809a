#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>

#include <functional>

namespace helio {

/// What a shell offers to its pages beside the plug-in's commands, by name: takes the arguments of
/// a call, and answers at once.
using PageOperations = QMap<QString, std::function<QJsonObject(const QJsonObject &)>>;

class DoctorOperations;
class TaskOperations;

/// What answers later; either may be missing.
struct PageHelpers
{
    DoctorOperations *doctor = nullptr;
    TaskOperations *tasks = nullptr;
};

} // namespace helio
