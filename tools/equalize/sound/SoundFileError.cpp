#include "tools/equalize/sound/SoundFileError.h"

#include "support/AsciiText.h"

#include <string_view>

namespace eq {

std::string soundFileError(SNDFILE* file) {
    switch (sf_error(file)) {
    case SF_ERR_NO_ERROR:
        return "libsndfile reports no reason";
    case SF_ERR_UNRECOGNISED_FORMAT:
        return "the contents have no known audio format, whatever the name says";
    case SF_ERR_MALFORMED_FILE:
        return "the file is damaged: its header contradicts itself";
    case SF_ERR_UNSUPPORTED_ENCODING:
        return "libsndfile cannot decode the samples; convert the file to WAV or FLAC first";
    default:
        break;
    }
    // The numbers of other errors are not published. Their texts have the form "Error : ... ."
    std::string_view text = sf_strerror(file);
    constexpr std::string_view System = "System error : ";
    if (text.starts_with(System)) return std::string(trim_chars(text.substr(System.size()), ". "));
    for (const std::string_view opening : {"Error : ", "Error: ", "Internal error : "})
        if (text.starts_with(opening)) text.remove_prefix(opening.size());
    return "libsndfile reports: " + std::string(trim_chars(text, ". \n"));
}

} // namespace eq
