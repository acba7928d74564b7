#include "tools/equalize/Notes.h"

#include "tools/common/OutputStream.h"
#include "tools/common/Printable.h"
#include "tools/common/SpoolFile.h"
#include "tools/common/Text.h"
#include "tools/equalize/StatusLine.h"
#include "tools/equalize/pipes/StreamHeader.h"
#include "tools/equalize/sound/OutputFormat.h"

#include <cmath>
#include <cstdio>

namespace eq {

namespace {

/// Returns "1 sample was", "2 samples were" and so on.
std::string samplesWere(sf_count_t count) {
    return std::to_string(count) + (count == 1 ? " sample was" : " samples were");
}

} // namespace

void note(const Options& options, const std::string& message) {
    if (!options.quiet) StatusLine::message(message);
}

void noteRate(const Options& options, const Settings& settings, const FrequencyMap& frequencies) {
    if (frequencies.isAtDesignRate()) return;
    if (const std::string landings = settings.uncorrectedText(frequencies); !landings.empty())
        note(options, std::to_string(frequencies.sampleRate()) +
                          " Hz file: values of --set are not corrected for the rate: " + landings);
    if (!settings.dependsOnRate()) return;
    const std::string rate = std::to_string(frequencies.sampleRate());
    const std::string design = fixed(DesignRate, 0);
    note(options, frequencies.isCorrected() ? rate + " Hz file: frequencies are scaled by " + design + "/" + rate +
                                                  " for the effect, so that they are heard as given"
                                            : rate + " Hz file, not corrected: frequencies are heard at " + rate + "/" +
                                                  design + " of the given values");
}

void noteFormat(const Options& options, const FileJob& job, const AudioReader& reader, int output) {
    const int input = reader.info().format;
    if (isLossy(output) && !options.bits.empty())
        note(options, job.output + ": --bits has no effect on " + formatName(output));
    if (!isLossy(output) && options.quality)
        note(options, job.output + ": --quality has no effect on " + formatName(output));
    if (integerBits(output) == 0 && options.dither)
        note(options, job.output + ": --dither has no effect on " + formatName(output) + ", which has no integers");
    if (reader.isLengthOpen())
        note(options,
             job.input + ": its header does not state the length, so the sound is read to the end of the file");
    if (isLossy(input) && isLossy(output))
        note(options, job.input + ": the input is already compressed with loss (" + formatName(input) +
                          "), and the output loses more; a FLAC or WAV file loses nothing more");
}

void noteSpools(const Options& options, const FileJob& job, const SoundInput& input, int output) {
    if (!input.spoolReason().empty())
        note(options, job.input + ": the input was copied into a temporary file in " + spoolFolder() + ", because " +
                          input.spoolReason());
    if (isStream(job.output) && !isWrittenInOrder(output))
        note(options, job.output + ": the output waits in a temporary file in " + spoolFolder() + ", because " +
                          formatName(output) + " is not written in order");
}

void noteLeftInPipe(const Options& options, const AudioReader& reader) {
    std::string names;
    for (const std::string& chunk : reader.leftInPipe()) names += (names.empty() ? "" : ", ") + chunk;
    if (!names.empty())
        note(options, reader.name() + ": not copied, because they follow the sound in a pipe: " + names);
}

void noteSamples(const Options& options, const FileJob& job, const AudioReader& reader, const AudioWriter& writer) {
    if (reader.replacedSamples() != 0)
        note(options,
             job.input + ": " + samplesWere(reader.replacedSamples()) + " not a number or infinite, and replaced by 0");
    if (writer.samplesBeyondFullScale() == 0) return;
    const double excess = 20.0 * std::log10(static_cast<double>(writer.peak()));
    const int format = writer.info().format;
    const std::string what = integerBits(format) != 0 ? "clipped to full scale"
                             : isLossy(format)        ? "beyond full scale, and players may clip"
                                                      : "beyond full scale, which the format keeps";
    note(options, job.output + ": " + samplesWere(writer.samplesBeyondFullScale()) + " " + what + "; the highest is " +
                      fixed(excess, 2) + " dB above it");
}

void noteSummary(const Options& options, const FileJob& job, const AudioWriter& writer, double seconds) {
    const SF_INFO& info = writer.info();
    note(options, job.input + " -> " + job.output + ": " + std::to_string(writer.framesWritten()) +
                      " frames, channels: " + std::to_string(info.channels) + ", " + std::to_string(info.samplerate) +
                      " Hz, " + formatName(info.format) + ", in " + fixed(seconds, 1) + " s");
}

} // namespace eq
