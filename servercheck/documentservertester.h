#pragma once

#include <QString>

#include "servercheck/servertest.h"

namespace OfficeAssiant {

/// Sends the test request to the document server, follows its redirects and waits for the answer.
/// True for an answer without a network error; else @p status is set to the HTTP status (0 when
/// there is none), a colon and the server's text.
///
/// Events are processed meanwhile and there is no limit of time: other commands may run, this
/// function may be called again, and the caller may be gone when it returns. Only the end of the
/// application breaks the test off.
bool testDocumentServer(const ServerTest &test, QString *status);

} // namespace OfficeAssiant
