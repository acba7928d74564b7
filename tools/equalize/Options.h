#pragma once

#include "tools/common/NamedDescriptor.h"
#include "tools/common/OutputFile.h"
#include "tools/equalize/FilePlan.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace eq {

/// The command line of `equalize`.
struct Options {
    FileArguments files;
    std::vector<std::string> volumes;
    std::vector<std::string> bands;
    std::vector<std::string> normalised;
    std::string preset;
    std::string savePreset;
    std::string plot;
    std::string import;
    std::string exportFile;
    bool fit = false;
    std::optional<int> fitBands;
    bool force = false;
    std::string normalize;
    bool headroom = false;
    bool dither = false;
    std::string plugin;
    std::optional<double> quality;
    std::string bits;
    std::string format;
    int blockFrames = 2048;
    bool keepLatency = false;
    bool noRateCorrection = false;
    bool replaceNan = false;
    bool list = false;
    bool listPresets = false;
    bool json = false;
    bool quiet = false;
    std::size_t jobs = std::max(std::thread::hardware_concurrency(), 1U);
    bool skipExisting = false;
    bool noClobber = false;
    bool dryRun = false;

    [[nodiscard]] bool hasTaskWithoutFiles() const {
        return list || !plot.empty() || !savePreset.empty() || !exportFile.empty();
    }
    [[nodiscard]] bool writesSoundToStandardOutput() const {
        return !files.areInputs() && files.files.size() == 2 && isStandardOutput(files.files[1]);
    }
    /// Returns whether the files of --plot, --save-preset and --export may replace existing files.
    [[nodiscard]] Replacing replacingOthers() const { return noClobber ? Replacing::Refused : Replacing::Allowed; }
    /// Returns whether the equalized files may replace existing files.
    [[nodiscard]] Replacing replacing() const {
        return noClobber || skipExisting ? Replacing::Refused : Replacing::Allowed;
    }
};

} // namespace eq
