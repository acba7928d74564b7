#include "tests/stress/LanguageFolder.h"

#include "tests/stress/Report.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// The file that is read whatever the user's language.
constexpr const char* AlwaysRead = "Equalizer1033.lng";

constexpr const char* NeverAllowed[] = {
    "\nno equals sign here\n",
    "\n<CODEPAGE 1252\n",
    "\n<NONSENSE> = 1\n",
    "\n<CODEPAGE 932>\n", // not of this language
    "\n[Parametric Equalizer]\nIDS_DB\n",
};

constexpr const char* PerhapsAllowed[] = {
    "[",
    "]",
    "=",
    "{IDS_DB}",
    "<CODEPAGE 1252>",
    "<CODEPAGE 4294967297>",
    "<ACCELERATOR",
    "\\x",
    "\\xFF\\x81",
    "\\",
    "\xFF\xFE",
    "\x81",
    "\r",
    "//",
    "IDS_Hz =",
    "\n[Shared]\n",
    "= =",
    "IDS_DB={}{",
    "\xEF\xBB\xBF",
    "\x1A",
    "\n",
};

std::string read(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// One change of the bytes, of which a reader may make something or not.
void spoil(std::string& bytes, Choices& choices) {
    const std::size_t place = choices.below(bytes.size() + 1);
    const std::size_t length = choices.below(std::min<std::size_t>(bytes.size() - place, 200) + 1);
    switch (choices.below(8)) {
    case 0:
        bytes.resize(place);
        break;
    case 1:
        bytes.erase(place, length);
        break;
    case 2:
        bytes.insert(place, bytes.substr(place, length));
        break;
    case 3:
        bytes.insert(place, choices.of(PerhapsAllowed));
        break;
    case 4:
        bytes.insert(place, choices.below(30000), static_cast<char>(choices.next()));
        break;
    case 5: // a unit word that goes ahead of the file's own
        bytes.insert(0, "[Parametric Equalizer]\nIDS_DB = " +
                            std::string(choices.below(60), choices.oneIn(2) ? 'x' : '\xE9') + "\n");
        break;
    default:
        for (std::size_t i = place; i < place + length; ++i)
            if (choices.oneIn(4)) bytes[i] = static_cast<char>(choices.next());
        break;
    }
}

} // namespace

LanguageFolder::LanguageFolder(const fs::path& languages) : source(languages) {
    for (const fs::directory_entry& entry : fs::directory_iterator(source))
        if (entry.path().extension() == ".lng") fs::copy(entry.path(), folder.path() / entry.path().filename());
    require(fs::exists(folder.path() / AlwaysRead), "there are no language files beside the library");
}

std::string LanguageFolder::copyLibrary(const fs::path& library) const {
    const fs::path copy = folder.path() / library.filename();
    fs::copy_file(library, copy, fs::copy_options::overwrite_existing);
    return copy.string();
}

bool LanguageFolder::breakOne(Choices& choices) {
    const bool isSure = choices.oneIn(2);
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder.path()))
        if (entry.path().extension() == ".lng") files.push_back(entry.path().filename());
    std::sort(files.begin(), files.end());
    broken = isSure || choices.oneIn(2) ? fs::path(AlwaysRead) : choices.of(files);

    std::string bytes = read(source / broken);
    if (isSure && choices.oneIn(4)) {
        bytes.insert(0, "\xFF\xFE"); // the mark of a form that is not read
    } else if (isSure) {
        bytes += choices.of(NeverAllowed);
    } else {
        for (std::size_t i = choices.below(8); i <= 8; ++i) spoil(bytes, choices);
    }
    folder.write(broken.string(), bytes);
    ++counts.brokenFiles;
    return isSure;
}

void LanguageFolder::mend() {
    fs::copy_file(source / broken, folder.path() / broken, fs::copy_options::overwrite_existing);
}
