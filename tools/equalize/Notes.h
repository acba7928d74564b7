#pragma once

#include "tools/equalize/FilePlan.h"
#include "tools/equalize/FrequencyMap.h"
#include "tools/equalize/Options.h"
#include "tools/equalize/Settings.h"
#include "tools/equalize/sound/AudioReader.h"
#include "tools/equalize/sound/AudioWriter.h"

#include <string>

namespace eq {

/// Writes a line to standard error, unless --quiet is given.
void note(const Options& options, const std::string& message);

/// Notes how the sampling rate of a file changes its frequencies.
void noteRate(const Options& options, const Settings& settings, const FrequencyMap& frequencies);

/// Notes options without effect on the output's format, an open length, and a second lossy compression. `output` is
/// libsndfile's format.
void noteFormat(const Options& options, const FileJob& job, const AudioReader& reader, int output);

/// Notes what waits in a temporary file.
void noteSpools(const Options& options, const FileJob& job, const SoundInput& input, int output);

/// Notes chunks and tags after a sound that came through a pipe.
void noteLeftInPipe(const Options& options, const AudioReader& reader);

/// Notes samples that were replaced, and samples beyond full scale.
void noteSamples(const Options& options, const FileJob& job, const AudioReader& reader, const AudioWriter& writer);

/// Notes a finished file.
void noteSummary(const Options& options, const FileJob& job, const AudioWriter& writer, double seconds);

} // namespace eq
