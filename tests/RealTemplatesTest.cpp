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

#include <cctype>
#include <glob.h>
#include <iostream>
#include <map>
#include <stdexcept>
#include <vector>

namespace {

/// Different resources of one type, each with where it was found first.
using Resources = std::map<std::string, std::string>;

std::vector<std::string> modulePaths() {
    glob_t found{};
    glob(EQ_WINDOWS_MODULES, 0, nullptr, &found);
    std::vector<std::string> paths(found.gl_pathv, found.gl_pathv + found.gl_pathc);
    globfree(&found);
    return paths;
}

class Collection {
public:
    Collection() : m_paths(modulePaths()) {
        for (const std::string& path : m_paths) add(path);
        std::cout << m_paths.size() << " modules, " << m_languages.size() << " languages\n";
    }

    [[nodiscard]] bool hasModules() const { return !m_paths.empty(); }
    [[nodiscard]] const std::vector<std::string>& faults() const { return m_faults; }

    const Resources& operator[](ResourceType type) {
        const auto number = static_cast<std::uint32_t>(type);
        std::cout << "type " << number << ": " << m_found[number] << " found, " << m_resources[number].size()
                  << " different\n";
        return m_resources[number];
    }

private:
    void add(const std::string& path) {
        try {
            for (PeResource& resource : readPeResources(path, {4, 5, 6, 9, 240})) {
                ++m_found[resource.type];
                m_languages.insert(resource.language);
                m_resources[resource.type].try_emplace(std::move(resource.bytes), path);
            }
        } catch (const std::exception& error) {
            m_faults.push_back(path + ": " + error.what());
        }
    }

    std::vector<std::string> m_paths;
    std::vector<std::string> m_faults;
    std::set<std::uint32_t> m_languages;
    std::map<std::uint32_t, std::size_t> m_found;
    std::map<std::uint32_t, Resources> m_resources;
};

class RealTemplates : public testing::Test {
protected:
    void SetUp() override {
        if (!collection().hasModules()) GTEST_SKIP() << "no Windows modules at " << EQ_WINDOWS_MODULES;
        ASSERT_EQ(collection().faults(), std::vector<std::string>{});
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

/// The fields of a dialog in their order, each as its bytes; the two of the font that may change stand apart.
struct ParsedDialog {
    std::vector<std::string> fields;
    std::string pointSize;
    std::string face;

    bool operator==(const ParsedDialog&) const = default;
};

/// Takes a dialog apart as its format is documented. Throws std::out_of_range where the bytes end too soon.
class DialogParser {
public:
    explicit DialogParser(const std::string& bytes) : m_bytes(bytes) {
        const bool isExtended = wordAt(bytes, 2) == 0xFFFF;
        const unsigned style = wordAt(bytes, isExtended ? 12 : 0);
        const unsigned items = wordAt(bytes, isExtended ? 16 : 8);
        const unsigned fontStyles = isExtended ? 0x48 : 0x40;
        keep(taken(isExtended ? 26 : 18));
        keep(takenName()); // menu
        keep(takenName()); // window class
        keep(takenText());
        if ((style & fontStyles) != 0) {
            m_dialog.pointSize = taken(2);
            if (isExtended) keep(taken(4));
            m_dialog.face = takenText();
        }
        for (unsigned i = 0; i < items; ++i) {
            m_at = (m_at + 3) / 4 * 4;
            keep(taken(isExtended ? 24 : 18));
            keep(takenName()); // window class
            keep(takenName()); // title
            keep(taken(2 + wordAt(bytes, m_at)));
        }
    }

    [[nodiscard]] const ParsedDialog& dialog() const { return m_dialog; }
    [[nodiscard]] std::size_t end() const { return m_at; }

private:
    void keep(std::string field) { m_dialog.fields.push_back(std::move(field)); }

    std::string taken(std::size_t size) {
        if (size > m_bytes.size() - m_at) throw std::out_of_range("the dialog ends early");
        m_at += size;
        return m_bytes.substr(m_at - size, size);
    }
    std::string takenText() {
        std::size_t size = 2;
        while (wordAt(m_bytes, m_at + size - 2) != 0) size += 2;
        return taken(size);
    }
    std::string takenName() { return wordAt(m_bytes, m_at) == 0xFFFF ? taken(4) : takenText(); }

    const std::string& m_bytes;
    std::size_t m_at = 0;
    ParsedDialog m_dialog;
};

std::string textField(std::string_view latin) {
    std::string bytes;
    for (const char letter : latin) bytes += {letter, '\0'};
    return bytes + std::string(2, '\0');
}

bool equalIgnoringCase(const std::string& a, const std::string& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
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
        expectReadToItsEnd(bytes, DialogParser(bytes).end());
    }
}

TEST_F(RealTemplates, DialogsChangeInTheFontAlone) {
    const GuiFont font("A longer face name", -24);
    int replaced = 0;
    for (const auto& [bytes, path] : collection()[ResourceType::Dialog]) {
        SCOPED_TRACE(path);
        const ParsedDialog original = DialogParser(bytes).dialog();
        const Rewritten result = rewriteWith<PrepareDialogResource>(bytes);
        if (!equalIgnoringCase(original.face, textField("MS Shell Dlg"))) {
            EXPECT_EQ(result.status, PrepUnchanged);
            continue;
        }
        ++replaced;
        ASSERT_EQ(result.status, PrepReplaced);
        const std::string output = rewrittenDialog(bytes);
        EXPECT_TRUE(result.is(TemplateBuilder().bytes(output)));
        const DialogParser parser(output);
        EXPECT_EQ(parser.end() + parser.end() % 2, output.size());
        const std::string eighteenPoints = {18, 0}; // 24 dots of 96 an inch
        EXPECT_EQ(parser.dialog(), (ParsedDialog{original.fields, eighteenPoints, textField("A longer face name")}));
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

// Most of them hold characters that the code page of the store's language does not.
TEST_F(RealTemplates, StringBundlesStayAsTheyAre) {
    const Resources& bundles = collection()[ResourceType::String];
    ASSERT_FALSE(bundles.empty());
    for (const auto& [bytes, path] : bundles) {
        EXPECT_EQ(rewriteWith<PrepareStringResource>(bytes).status, PrepUnchanged) << path;
    }
}

TEST_F(RealTemplates, AcceleratorTablesStayAsTheyAreAndAreReadToTheirEndMark) {
    const Resources& tables = collection()[ResourceType::Accelerator];
    ASSERT_FALSE(tables.empty());
    for (const auto& [bytes, path] : tables) {
        SCOPED_TRACE(path);
        EXPECT_EQ(rewriteWith<PrepareAcceleratorResource>(bytes).status, PrepUnchanged);
        std::uint32_t count = 0;
        const auto array = ToAccelArray(bytes.data(), bytes.size(), &count);
        ASSERT_EQ(count, bytes.size() / 8);
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_EQ(wordAt(bytes, 8 * i) & 0x80U, i + 1 == count ? 0x80U : 0U);
            EXPECT_EQ(array[i].fVirt, wordAt(bytes, 8 * i) & 0x7FU);
            EXPECT_EQ(array[i].key, wordAt(bytes, 8 * i + 2));
            EXPECT_EQ(array[i].cmd, wordAt(bytes, 8 * i + 4));
        }
    }
}

// Few modules have such data, and perhaps none of these.
TEST_F(RealTemplates, DialogInitDataStaysAsItIs) {
    for (const auto& [bytes, path] : collection()[ResourceType::DialogInit]) {
        EXPECT_EQ(rewriteWith<PrepareDialogInitResource>(bytes).status, PrepUnchanged) << path;
    }
}
