#pragma once

#include <QJsonObject>

namespace standin {

/// Each takes the program's arguments, those of the probe from the third on, and gives facts.

/// Connects to the bus of that address: the names of the programs on it, or the fault.
QJsonObject probeBus(int &argc, char *argv[]);

/// Opens the session's display as the suite would: its platform and screens, or the fault.
QJsonObject probeDisplay(int &argc, char *argv[]);

/// What draws with OpenGL on the session's display, or the fault.
QJsonObject probeOpenGl(int &argc, char *argv[]);

/// Asks the CUPS server: its address, default printer and printers, or the fault.
QJsonObject probePrinting(int &argc, char *argv[]);

} // namespace standin
