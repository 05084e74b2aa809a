#pragma once

namespace ctl {

/// The exit status of assistantctl; other programs rely on the numbers.
enum ExitStatus {
    Answered = 0,        ///< answered, or a command that sets no result has run
    AnsweredError = 1,   ///< the result is "error" or "parame error"
    WrongUsage = 2,      ///< wrong usage or unknown command
    NoLibrary = 3,       ///< the library cannot be loaded
    CallbackMissing = 4, ///< --until ran out of time
    EndedBySignal = 128, ///< plus the signal's number; SIGPIPE if nobody reads the events any more
};

} // namespace ctl
