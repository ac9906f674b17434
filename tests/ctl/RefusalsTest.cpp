#include "host/ctl/Refusals.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>

namespace zarvo::host::ctl {
namespace {

/** The messages in the first column of the tables of what the client gets. */
std::set<std::string> DocumentedRefusals() {
    std::ifstream file(AON_REFUSALS);
    std::set<std::string> messages;
    for (std::string line; std::getline(file, line) && !line.starts_with("## What only");) {
        const bool isRefusal = line.starts_with("| 1 ") || line.starts_with("| 2 ") ||
                               line.starts_with("| `EX_ILLEGAL_STATE` `");
        const size_t cellEnd = line.find(" |", 2);
        const size_t close = line.rfind('`', cellEnd);
        const size_t open = line.rfind('`', close - 1);
        if (isRefusal && close != std::string::npos && open != std::string::npos)
            messages.insert(line.substr(open + 1, close - open - 1));
    }
    return messages;
}

TEST(Refusals, AreThoseThatAreDocumented) {
    std::set<std::string> known;
    for (const Refusal& refusal : AllRefusals()) {
        EXPECT_FALSE(refusal.meaning.empty()) << refusal.message;
        known.emplace(refusal.message);
    }
    EXPECT_EQ(known, DocumentedRefusals());
}

}  // namespace
}  // namespace zarvo::host::ctl
