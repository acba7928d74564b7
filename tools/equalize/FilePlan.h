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
    std::string fault = {};   ///< the reason if the input is known to be unreadable
    std::uint64_t weight = 1; ///< the share of the input in the progress
};

/// The files that the command line names.
struct FileArguments {
    std::vector<std::string> files; ///< INPUT and OUTPUT, or only inputs: see `areInputs`
    std::string outputFolder;
    std::string suffix;
    bool isRecursive = false;
    std::vector<std::string> otherOutputs; ///< further files that the run writes

    /// Returns true if all files are inputs, and false for the form INPUT OUTPUT.
    [[nodiscard]] bool areInputs() const { return !outputFolder.empty() || !suffix.empty() || isRecursive; }
};

/// Replaces "-" by the path of standard input or standard output. Throws UsageError for "-" if all files are inputs.
void nameStandardStreams(FileArguments& arguments);

/// Returns all files to read and write. Throws UsageError if the run would write a file twice, or if an output is also
/// an input. Only in the form INPUT OUTPUT may OUTPUT be the same file as INPUT.
[[nodiscard]] std::vector<FileJob> planFiles(const FileArguments& arguments);

} // namespace eq
