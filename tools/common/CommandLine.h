#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace eq {

/// Parses the arguments, with the same habits for all tools: `--version`; help in 80 columns; an empty value is
/// refused; of two uses of an option with one value, the later one counts. To be called after all options are declared.
/// `usage` has one line for each form of the command. Throws UsageError and the parser's exceptions.
void parseCommandLine(CLI::App& app, const std::string& usage, int argumentCount, char** arguments);

} // namespace eq
