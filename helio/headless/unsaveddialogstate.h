#pragma once

#include <QtGlobal>

namespace helio {

/// Keeps Qt from writing the state of a file dialog (last directory, view) into the user's
/// configuration, where other Qt programs' dialogs read it. Lives as long as the dialog; no other
/// settings of the user are to be opened meanwhile.
class UnsavedDialogState
{
public:
    UnsavedDialogState();
    ~UnsavedDialogState();
    Q_DISABLE_COPY(UnsavedDialogState)
};

} // namespace helio
