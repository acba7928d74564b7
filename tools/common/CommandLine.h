#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace eq {

/// Parses the arguments with the same rules for all tools. Adds `--help`, which prints 80 columns, and `--version`. An
/// option with an empty value is an error. If an option with one value is repeated, the last value counts.
///
/// Call this function after the declaration of all options. `usage` has one line for each form of the command. Throws
/// UsageError and the parser's exceptions.
void parseCommandLine(CLI::App& app, const std::string& usage, int argumentCount, char** arguments);

} // namespace eq
