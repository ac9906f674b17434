#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/soak/Client.h"
#include "host/soak/Report.h"
#include "host/soak/ServiceProcess.h"

namespace zarvo::host::soak {

/** One kind of load on a service, and what must hold during it and after it. */
class Section {
  public:
    virtual ~Section() = default;

    virtual std::string Title() const = 0;
    /** Loads the service so often; what is found goes to the row. Ends early with a finding, or
     * when the program was interrupted. */
    virtual void Run(ServiceProcess& service, uint64_t times, Row& row) = 0;
};

/** A section, and how often it runs for each hundred cycles that were asked for. */
struct Plan {
    std::unique_ptr<Section> section;
    uint64_t timesPerHundred;
};
/** On the simulated scene. */
std::vector<Plan> SceneSections();
/** On a replay, which delivers as fast as the service takes it. */
Plan EventSection();

/** A client's whole life in good order, with events; some of these, if so many are asked for. */
void LiveOnce(ServiceProcess& service, Row& row, size_t events = 3,
              std::vector<AONCallBackInfo>* kept = nullptr);

}  // namespace zarvo::host::soak
