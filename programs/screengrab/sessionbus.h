#pragma once

namespace standin {

/// Whether the session has a bus. Asking for one that is not there would start one, which stays.
bool hasSessionBus();

} // namespace standin
