#include "helio/ctl/sessionrequest.h"
#include "tests/fuzz/fuzzing.h"

using ctl::SessionRequest;
using fuzzing::require;

/// A line of an assistantctl session.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const SessionRequest request = ctl::parseSessionRequest(fuzzing::bytesOf(data, size));
    require((request.kind == SessionRequest::Faulty) == !request.fault.isEmpty());
    require(!request.id.isUndefined());
    switch (request.kind) {
    case SessionRequest::Command:
        require(!request.command.isEmpty());
        require(request.page == QLatin1String("main") || request.page == QLatin1String("child"));
        break;
    case SessionRequest::Until:
        require(!request.callback.isEmpty() && request.durationMs >= 0);
        break;
    case SessionRequest::Wait:
        require(request.durationMs >= 0);
        break;
    case SessionRequest::Faulty:
        break;
    }
    return 0;
}
