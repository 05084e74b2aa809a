#pragma once

#include <QString>

#include <optional>

#include "servercheck/servertest.h"

namespace OfficeAssiant {

/// Sends the test request to the document server, follows its redirects and waits for the answer.
/// Gives nothing for an answer without a network error, else the HTTP status (0 if there is none),
/// a colon and the first 2 MiB of the server's text.
///
/// Waits without a time limit and processes events meanwhile: other commands may run, this function
/// may be called again, and the caller may be destroyed before it returns. Only the end of the
/// application stops the test.
std::optional<QString> testDocumentServer(const ServerTest &test);

} // namespace OfficeAssiant
