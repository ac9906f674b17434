#include "tests/support/LogRecorder.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "host/log/LogFormat.h"

namespace zarvo::test {

using host::LogLine;

/** Shared with the tap's sink, which may outlive the recorder for the length of a line. */
struct LogRecorder::Lines {
    std::mutex mutex;
    std::condition_variable grown;
    std::vector<LogLine> lines;

    void Add(const LogLine& line) {
        const std::lock_guard lock(mutex);
        lines.push_back(line);
        grown.notify_all();
    }
};

LogRecorder::LogRecorder(std::string tag)
    : mLines(std::make_shared<Lines>()),
      mTap([lines = mLines, wanted = std::move(tag)](const LogLine& line) {
          if (line.tag == wanted) lines->Add(line);
      }) {}

bool LogRecorder::WaitFor(std::string_view part, size_t count) const {
    const auto matches = [part](const LogLine& line) {
        return line.message.find(part) != std::string::npos;
    };
    std::unique_lock lock(mLines->mutex);
    return mLines->grown.wait_for(lock, kPatience, [&] {
        const auto found = std::count_if(mLines->lines.begin(), mLines->lines.end(), matches);
        return static_cast<size_t>(found) >= count;
    });
}

std::vector<LogLine> LogRecorder::Take() {
    const std::lock_guard lock(mLines->mutex);
    return std::exchange(mLines->lines, {});
}

std::vector<std::string> LogRecorder::TakeTexts() {
    std::vector<std::string> texts;
    for (const LogLine& line : Take())
        texts.push_back(std::string{host::PriorityLetter(line.priority)} + ": " + line.message);
    return texts;
}

}  // namespace zarvo::test
