#pragma once

#include <QtGlobal>

namespace helio {

/// Keeps Qt from saving the state of a file dialog (last directory, display mode) in the user's
/// configuration, where the dialogs of other Qt programs read it. Lives as long as the dialog; do
/// not open other user settings during that time.
class UnsavedDialogState
{
public:
    UnsavedDialogState();
    ~UnsavedDialogState();
    Q_DISABLE_COPY(UnsavedDialogState)
};

} // namespace helio
