#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace eq {

/// Makes the habits of all tools' command lines equal. To be called after all options are declared: `--version`; help
/// in 80 columns; an empty value is refused; of two uses of an option with one value, the later one counts.
/// `usage` has one line for each form of the command.
void finishCommandLine(CLI::App& app, const std::string& usage);

} // namespace eq
