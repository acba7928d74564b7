#pragma once

#include "tools/common/Errors.h"
#include "tools/common/Printable.h"

#include <cstdio>
#include <exception>
#include <new>
#include <string>

#include <CLI/CLI.hpp>

namespace eq {

inline constexpr int ExitFailure = 1; ///< bad input, or output that cannot be written
inline constexpr int ExitUsage = 2;   ///< the command was given wrongly

/// Runs a command line tool's work, which gives its exit code. What it throws becomes a message on standard error, in
/// the tool's name, and the exit code that fits.
template <typename Command>
int runTool(const char* name, const Command& command) {
    const auto fail = [name](const char* message, int exitCode) {
        std::fflush(stdout);
        std::fprintf(stderr, "%s: %s\n", name, printable(message).c_str());
        return exitCode;
    };
    try {
        return command();
    } catch (const CLI::Error& error) {
        return fail(error.what(), ExitUsage);
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
