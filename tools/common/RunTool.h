#pragma once

#include "tools/common/Errors.h"
#include "tools/common/Printable.h"

#include <cstdio>
#include <exception>
#include <new>
#include <string>

namespace eq {

inline constexpr int ExitFailure = 1; ///< bad input, or output that cannot be written
inline constexpr int ExitUsage = 2;   ///< an error in the command line

/// Calls `command`, which does the work of a command-line tool, and returns its exit code. If `command` throws, prints
/// the message on standard error, after the tool's name, and returns ExitUsage or ExitFailure.
template <typename Command>
int runTool(const char* name, const Command& command) {
    const auto fail = [name](const char* message, int exitCode) {
        std::fflush(stdout);
        std::fprintf(stderr, "%s: %s\n", name, printable(message).c_str());
        return exitCode;
    };
    try {
        return command();
    } catch (const UsageError& error) {
        return fail(error.what(), ExitUsage);
    } catch (const FileError& error) {
        const int exitCode = fail(error.what(), ExitFailure);
        for (const std::string& detail : error.details) fail(detail.c_str(), exitCode);
        return exitCode;
    } catch (const std::bad_alloc&) {
        return fail("out of memory", ExitFailure);
    } catch (const std::exception& error) {
        return fail(error.what(), ExitFailure);
    }
}

} // namespace eq
