#pragma once

#include "tests/stress/Choices.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <string>

/// Copies of libraries, and beside them a copy of the language files, of which one may be broken at a time.
class LanguageFolder {
public:
    /// Of language files in the library's folder.
    explicit LanguageFolder(const std::filesystem::path& languages);

    /// Gives the path of the copy.
    [[nodiscard]] std::string copyLibrary(const std::filesystem::path& library) const;

    /// Breaks a file. Gives whether it is one that is read, in a way that no reader lets pass.
    bool breakOne(Choices& choices);
    void mend();

private:
    std::filesystem::path source;
    TemporaryFolder folder;
    std::filesystem::path broken;
};
