#pragma once

#include "helio/tasks/running/taskrun.h"

/// The tasks; docs/host.md lists them.
namespace helio::tasks {

/// Writes the system report to the chosen file.
TaskEnd writeReport(const TaskRun &run);
/// Writes the text of the page to the chosen file.
TaskEnd saveText(const TaskRun &run);
/// Builds the feedback archive as the chosen file.
TaskEnd buildArchive(const TaskRun &run);
/// Has the suite's check tool check, and answers only what it has written meanwhile.
TaskEnd checkEnvironment(const TaskRun &run);
/// Has the check tool print the chosen document, and gives only a PDF that was made meanwhile.
TaskEnd printDocument(const TaskRun &run);
/// Commands that take long, in a process of their own: the answer has their envelope.
TaskEnd readSystem(const TaskRun &run);
TaskEnd compareFonts(const TaskRun &run);
TaskEnd askServer(const TaskRun &run);
/// The window may have another Qt than the suite and the command line, with other plug-ins.
TaskEnd checkInput(const TaskRun &run);
/// What missing fonts are shown in, and which font packages are installed.
TaskEnd findSubstitutes(const TaskRun &run);
/// What the command for it answers, without making the folder of the desktop.
TaskEnd listShortcuts(const TaskRun &run);
/// What the desktop opens the suite's documents with.
TaskEnd readOpenings(const TaskRun &run);
/// Has the suite open its documents, and reads again.
TaskEnd repairOpenings(const TaskRun &run);
/// Kind, rights, owner and time of each path, whatever is in its name.
TaskEnd describePaths(const TaskRun &run);
/// Only tells the path of the chosen file.
TaskEnd choosePath(const TaskRun &run);
/// The files in the folder of the suite's crash dumps, and whether the suite keeps dumps.
TaskEnd listDumps(const TaskRun &run);
/// Shows that folder.
TaskEnd openDumps(const TaskRun &run);
/// What differs between reports, and from this machine where that is asked for.
TaskEnd compareReports(const TaskRun &run);
/// What the suite's profile costs at its start.
TaskEnd measureStart(const TaskRun &run);
/// Sets one value of the updater's configuration; every other byte stays.
TaskEnd setUpdaterValue(const TaskRun &run);
/// The processes but for the window's own, and how busy the machine is.
TaskEnd listProcesses(const TaskRun &run);
/// How the desktop shows the programs that are named.
TaskEnd describePrograms(const TaskRun &run);
/// Distribution, desktop, memory, disks, graphics, screens and languages of the machine.
TaskEnd describeMachine(const TaskRun &run);
/// Sends a request to a server, and tells how long each step took.
TaskEnd timeRequest(const TaskRun &run);
/// A picture of a file, or the beginning of its text.
TaskEnd previewFile(const TaskRun &run);
/// Ends one of the user's processes, and waits until it is gone.
TaskEnd endOneProcess(const TaskRun &run);

} // namespace helio::tasks

namespace doctor {
struct Machine;
}

namespace helio {

QJsonObject machinePicture(const doctor::Machine &machine);

/// Whether the program is there that task.request needs.
bool canTimeRequests();

} // namespace helio
