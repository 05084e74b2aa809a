#pragma once

#include <QJsonObject>

namespace programs {

/// Each takes the program's arguments, its own from the third on, and returns facts.

/// Connects to the bus at an address: the names on the bus, or the fault.
QJsonObject probeBus(int &argc, char *argv[]);

/// Opens the session's display as the suite would: platform and screens, or the fault.
QJsonObject probeDisplay(int &argc, char *argv[]);

/// The OpenGL renderer of the session's display, or the fault.
QJsonObject probeOpenGl(int &argc, char *argv[]);

/// Asks the CUPS server: its address, default printer and printers, or the fault.
QJsonObject probePrinting(int &argc, char *argv[]);

} // namespace programs
