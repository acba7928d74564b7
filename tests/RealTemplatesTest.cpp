// The rewriters on what resource compilers really write: the resources of the Windows modules that Wine brings along,
// in some fifty languages.

#include "platform/standin/TestHooks.h"
#include "tests/support/PeResources.h"
#include "tests/support/Rewritten.h"
#include "wedge/DialogReader.h"
#include "wedge/MenuReader.h"
#include "wedge/ResourceFormats.h"
#include "wedge/ResourceRewriters.h"

#include <gtest/gtest.h>

#include <glob.h>
#include <iostream>
#include <map>
#include <stdexcept>
#include <vector>

namespace {

/// Different resources of one type, each with where it was found first.
using Resources = std::map<std::string, std::string>;

class Collection {
public:
    Collection() {
        glob_t found{};
        glob(EQ_WINDOWS_MODULES, 0, nullptr, &found);
        for (std::size_t i = 0; i < found.gl_pathc; ++i) add(found.gl_pathv[i]);
        std::cout << found.gl_pathc << " modules, " << m_languages.size() << " languages\n";
        globfree(&found);
    }

    [[nodiscard]] bool isEmpty() const { return m_resources.empty(); }
    [[nodiscard]] const std::vector<std::string>& faults() const { return m_faults; }

    const Resources& operator[](ResourceType type) { return m_resources[static_cast<std::uint32_t>(type)]; }

private:
    void add(const std::string& path) {
        try {
            for (PeResource& resource : readPeResources(path, {4, 5, 6, 9, 240})) {
                m_languages.insert(resource.language);
                m_resources[resource.type].try_emplace(std::move(resource.bytes), path);
            }
        } catch (const std::exception& error) {
            m_faults.push_back(path + ": " + error.what());
        }
    }

    std::vector<std::string> m_faults;
    std::set<std::uint32_t> m_languages;
    std::map<std::uint32_t, Resources> m_resources;
};

class RealTemplates : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(collection().faults(), std::vector<std::string>{});
        if (collection().isEmpty()) GTEST_SKIP() << "no Windows modules at " << EQ_WINDOWS_MODULES;
    }

    static Collection& collection() {
        static Collection all;
        return all;
    }
};

/// The system's dialog font for the length of a test.
class GuiFont {
public:
    GuiFont(const std::string& face, LONG height) {
        GetObjectA(GetStockObject(DEFAULT_GUI_FONT), sizeof m_before, &m_before);
        standin::setGuiFont(face, height);
    }
    ~GuiFont() { standin::setGuiFont(m_before.lfFaceName, m_before.lfHeight); }
    GuiFont(const GuiFont&) = delete;
    GuiFont& operator=(const GuiFont&) = delete;

private:
    LOGFONTA m_before{};
};

unsigned wordAt(const std::string& bytes, std::size_t offset) {
    return static_cast<unsigned char>(bytes.at(offset)) | static_cast<unsigned char>(bytes.at(offset + 1)) << 8U;
}

std::string asUnits(std::string_view latin) {
    std::string bytes;
    for (const char letter : latin) bytes += {letter, '\0'};
    return bytes;
}

template <typename Reader>
std::string outputOf(const std::string& bytes) {
    Reader reader;
    reader.Read(bytes.data(), bytes.size());
    return {reinterpret_cast<const char*>(reader.GetOutput().data()), 2 * reader.GetOutput().size()};
}

std::string rewrittenDialog(const std::string& bytes) {
    const bool isExtended = wordAt(bytes, 2) == 0xFFFF;
    return isExtended ? outputOf<DialogReaderExtended>(bytes) : outputOf<DialogReaderStandard>(bytes);
}

std::string rewrittenMenu(const std::string& bytes) {
    return wordAt(bytes, 0) == 1 ? outputOf<MenuReaderExtended>(bytes) : outputOf<MenuReaderStandard>(bytes);
}

/// Compilers fill a resource up to a multiple of four bytes at most.
void expectReadToItsEnd(const std::string& bytes, std::size_t end) {
    EXPECT_LE(end, bytes.size());
    EXPECT_LT(bytes.size(), end + 4);
}

} // namespace

TEST_F(RealTemplates, DialogsStayAsTheyAreWithoutASystemFont) {
    const GuiFont none("", 0);
    const Resources& dialogs = collection()[ResourceType::Dialog];
    ASSERT_FALSE(dialogs.empty());
    for (const auto& [bytes, path] : dialogs) {
        SCOPED_TRACE(path);
        EXPECT_EQ(rewriteWith<PrepareDialogResource>(bytes).status, PrepUnchanged);
        expectReadToItsEnd(bytes, rewrittenDialog(bytes).size());
    }
}

// With a font whose name has as many letters as the one that it replaces, nothing but name and size may differ.
TEST_F(RealTemplates, DialogsChangeInTheFontAlone) {
    const GuiFont font("MS SHELL DLG", -24);
    const std::string face = asUnits("MS SHELL DLG") + std::string(2, '\0');
    int replaced = 0;
    for (const auto& [bytes, path] : collection()[ResourceType::Dialog]) {
        SCOPED_TRACE(path);
        const Rewritten result = rewriteWith<PrepareDialogResource>(bytes);
        if (result.status == PrepUnchanged) continue;
        ++replaced;
        ASSERT_EQ(result.status, PrepReplaced);
        const std::string output = rewrittenDialog(bytes);
        EXPECT_TRUE(result.is(TemplateBuilder().bytes(output)));
        const std::size_t at = output.find(face);
        ASSERT_NE(at, output.npos);
        const std::size_t sizeAt = at - (wordAt(bytes, 2) == 0xFFFF ? 6 : 2);
        std::string expected = bytes.substr(0, output.size());
        expected.replace(at, face.size(), face);
        expected[sizeAt] = 18; // points: 24 dots of 96 an inch
        EXPECT_EQ(output, expected);
    }
    std::cout << replaced << " of them replaced\n";
    EXPECT_GT(replaced, 0);
}

TEST_F(RealTemplates, MenusStayAsTheyAre) {
    const Resources& menus = collection()[ResourceType::Menu];
    ASSERT_FALSE(menus.empty());
    for (const auto& [bytes, path] : menus) {
        SCOPED_TRACE(path);
        EXPECT_EQ(rewriteWith<PrepareMenuResource>(bytes).status, PrepUnchanged);
        expectReadToItsEnd(bytes, rewrittenMenu(bytes).size());
    }
}

// Most of the strings hold characters that the code page of the store's language does not. Few modules have data for
// the initialisation of dialogs, and perhaps none of these.
TEST_F(RealTemplates, OtherResourcesStayAsTheyAre) {
    const Resources& bundles = collection()[ResourceType::String];
    ASSERT_FALSE(bundles.empty());
    for (const auto& [bytes, path] : bundles)
        EXPECT_EQ(rewriteWith<PrepareStringResource>(bytes).status, PrepUnchanged) << path;
    for (const auto& [bytes, path] : collection()[ResourceType::DialogInit])
        EXPECT_EQ(rewriteWith<PrepareDialogInitResource>(bytes).status, PrepUnchanged) << path;
    const Resources& tables = collection()[ResourceType::Accelerator];
    ASSERT_FALSE(tables.empty());
    for (const auto& [bytes, path] : tables) {
        EXPECT_EQ(rewriteWith<PrepareAcceleratorResource>(bytes).status, PrepUnchanged) << path;
        std::uint32_t count = 0;
        static_cast<void>(ToAccelArray(bytes.data(), bytes.size(), &count));
        EXPECT_EQ(count, bytes.size() / 8) << path;
    }
}
