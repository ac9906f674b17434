#pragma once

#include <string>
#include <vector>

namespace zarvo::bench {

/** From here on the log's lines, of every priority, go nowhere. */
void DropLog();

/** Does the work and gives the lines that were logged meanwhile, which only this thread may do. */
template <typename Work>
std::vector<std::string> LinesOf(Work work);

/** Where the lines go, null for nowhere. */
void KeepLogIn(std::vector<std::string>* lines);

template <typename Work>
std::vector<std::string> LinesOf(Work work) {
    std::vector<std::string> lines;
    KeepLogIn(&lines);
    work();
    KeepLogIn(nullptr);
    return lines;
}

}  // namespace zarvo::bench
