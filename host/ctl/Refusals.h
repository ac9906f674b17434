#pragma once

#include <span>
#include <string_view>

namespace zarvo::host::ctl {

/** A message of the service, to the letter, and what it really means. */
struct Refusal {
    std::string_view message;
    std::string_view meaning;
};

/** Every message with which the service refuses something. */
std::span<const Refusal> AllRefusals();
/** What the message means; empty if it is none of the service's. */
std::string_view MeaningOf(std::string_view message);

}  // namespace zarvo::host::ctl
