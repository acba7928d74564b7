#include "tools/equalize/StatusLine.h"

#include "tools/common/Printable.h"

#include <cstdio>
#include <mutex>

#include <sys/ioctl.h>
#include <unistd.h>

namespace eq {
namespace {

std::mutex lineInUse;
std::string shownLine;

void replaceLine(const std::string& text) {
    if (shownLine.empty() && text.empty()) return;
    std::string output = "\r" + text;
    if (text.size() < shownLine.size()) {
        // Blanks erase the end of a longer line.
        output.append(shownLine.size() - text.size(), ' ');
        output += "\r" + text;
    }
    std::fputs(output.c_str(), stderr);
    std::fflush(stderr);
    shownLine = text;
}

} // namespace

void StatusLine::message(const std::string& text) {
    const std::lock_guard lock(lineInUse);
    const std::string line = shownLine;
    replaceLine("");
    std::fflush(stdout);
    std::fprintf(stderr, "equalize: %s\n", printable(text).c_str());
    replaceLine(line);
}

void StatusLine::show(const std::string& text) {
    const std::lock_guard lock(lineInUse);
    replaceLine(text);
}

bool StatusLine::isTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

int StatusLine::columns() {
    constexpr int Usual = 80;
    winsize size = {};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : Usual;
}

} // namespace eq
