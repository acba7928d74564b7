#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace eq {

/// One file to read, and the file to write.
struct FileJob {
    std::string input;
    std::string output;
    std::string fault = {};   ///< why the input cannot be read, if that is known
    std::uint64_t weight = 1; ///< the input's part in the progress
};

/// The files that the command line names.
struct FileArguments {
    std::vector<std::string> files; ///< INPUT OUTPUT, or inputs if there is a folder or a suffix
    std::string outputFolder;
    std::string suffix;
    bool isRecursive = false;
    std::vector<std::string> otherOutputs; ///< what else the run writes

    /// True for the form with several inputs.
    [[nodiscard]] bool areInputs() const { return !outputFolder.empty() || !suffix.empty() || isRecursive; }
};

/// Replaces "-" by the path of standard input or standard output. Throws UsageError in the form with several inputs.
void nameStandardStreams(FileArguments& arguments);

/// Returns all files to read and write. Throws UsageError if a file would be written twice, or an output is an input.
/// Only in the form INPUT OUTPUT may the output be its own input.
[[nodiscard]] std::vector<FileJob> planFiles(const FileArguments& arguments);

} // namespace eq
