#include "bench/Conditions.h"

#include <sched.h>
#include <sys/utsname.h>

#include <fstream>
#include <string>

#include "bench/Fail.h"
#include "bench/Records.h"

namespace zarvo::bench {

namespace {

std::string ProcessorModel() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
    }
    return "unknown";
}

std::string Kernel() {
    utsname name{};
    uname(&name);
    return std::string(name.sysname) + ' ' + name.release + ' ' + name.machine;
}

std::string FirstLineOf(const char* path) {
    std::ifstream file(path);
    std::string line;
    return std::getline(file, line) ? line : "unknown";
}

std::string Mebibytes(size_t bytes) {
    return std::to_string(bytes >> 20) + " MiB";
}

std::string LoadAverage() {
    std::ifstream file("/proc/loadavg");
    std::string one;
    std::string five;
    std::string fifteen;
    file >> one >> five >> fifteen;
    return one + ' ' + five + ' ' + fifteen;
}

}  // namespace

int PinToOneCore() {
    cpu_set_t allowed;
    Require(sched_getaffinity(0, sizeof(allowed), &allowed) == 0, "no processors");
    int core = CPU_SETSIZE - 1;
    while (!CPU_ISSET(core, &allowed))
        --core;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(core, &one);
    Require(sched_setaffinity(0, sizeof(one), &one) == 0, "cannot stay on one processor");
    return core;
}

Conditions ConditionsOf(int core, const Pace& pace) {
    return {{"cpu", ProcessorModel()},
            {"kernel", Kernel()},
            {"compiler", AON_BENCH_COMPILER},
            {"flags", AON_BENCH_FLAGS},
            {"load average", LoadAverage()},
            {"core", std::to_string(core) + ", for all processes"},
            {"rounds", std::to_string(pace.rounds) + ", medians; blocks of " +
                               std::to_string(pace.block.count()) + " µs in turn"},
            {"cold", "images in turn of " + Mebibytes(Records::ColdBytes(k640x480)) +
                             " at 640x480, " + Mebibytes(Records::ColdBytes(k320x240)) +
                             " at 320x240; the last cache has " +
                             Mebibytes(Records::LastLevelCache()) + "; 64 bytes are warm"},
            {"most sent", FirstLineOf("/proc/sys/net/core/wmem_max") +
                                  " bytes (net.core.wmem_max), twice; wanted 524288"}};
}

}  // namespace zarvo::bench
