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

/// Reports how the sampling rate of a file affects the frequencies of the settings.
void noteRate(const Options& options, const Settings& settings, const FrequencyMap& frequencies);

/// Reports options without effect on the output's format, a header without the length, and a second lossy compression.
/// `output` is the format in libsndfile's form.
void noteFormat(const Options& options, const FileJob& job, const AudioReader& reader, int output);

/// Reports an input or output that is kept in a temporary file, and the reason.
void noteSpools(const Options& options, const FileJob& job, const SoundInput& input, int output);

/// Reports chunks and tags after the sound of a pipe. They are not copied.
void noteLeftInPipe(const Options& options, const AudioReader& reader);

/// Reports samples that were replaced, and samples beyond full scale.
void noteSamples(const Options& options, const FileJob& job, const AudioReader& reader, const AudioWriter& writer);

/// Reports a finished file, with its length, format and processing time.
void noteSummary(const Options& options, const FileJob& job, const AudioWriter& writer, double seconds);

} // namespace eq
