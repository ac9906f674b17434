// A phone has none of these: init starts and ends the service, and nobody turns its platform's
// knobs.

#include "host/service/HostControls.h"

namespace zarvo::host {

std::optional<int> BeginHostControls(int /*argc*/, char** /*argv*/) {
    return std::nullopt;
}

bool PublishHostControls(AIBinder* /*service*/) {
    return true;
}

void EndHostControls() {}

}  // namespace zarvo::host
