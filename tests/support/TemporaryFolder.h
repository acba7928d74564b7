#pragma once

// A folder of its own for a test, with blanks in its name, gone with everything in it at the end.

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

namespace eq {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        do {
            m_path = std::filesystem::temp_directory_path() / ("a test " + std::to_string(random()));
        } while (!std::filesystem::create_directory(m_path));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

    /// The path of something inside, in the system's own form; `name` may lead through folders, with '/'.
    [[nodiscard]] std::string path(const std::string& name) const { return (m_path / name).make_preferred().string(); }

    /// Writes a file with exactly these bytes, and the folders that lead to it. Gives its path.
    std::string write(const std::string& name, std::string_view bytes) const {
        const std::filesystem::path file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        if (!(std::ofstream(file, std::ios::binary) << bytes).flush())
            throw std::runtime_error("cannot write " + file.string());
        return path(name);
    }

private:
    std::filesystem::path m_path;
};

} // namespace eq
