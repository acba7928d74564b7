// The rewriters on what resource compilers really write: the resources of the Windows modules that Wine brings along,
// in some fifty languages.

#include "platform/standin/TestHooks.h"
#include "tests/support/PeResources.h"
#include "tests/support/Rewritten.h"
#include "wedge/DialogReader.h"
#include "wedge/MenuReader.h"
#include "wedge/ResourceRewriters.h"

#include <gtest/gtest.h>

#include <glob.h>
#include <map>

namespace {

const std::map<std::uint32_t, SizedRewriter> rewriters = {
    {4, PrepareMenuResource},        {5, PrepareDialogResource},       {6, PrepareStringResource},
    {9, PrepareAcceleratorResource}, {240, PrepareDialogInitResource},
};

/// Different resources of one type, each with where it was found first.
using Resources = std::map<std::string, std::string>;

class RealTemplates : public testing::Test {
protected:
    void SetUp() override {
        if (resources.empty()) GTEST_SKIP() << "no Windows modules at " << EQ_WINDOWS_MODULES;
        for (std::uint32_t type : {4, 5, 6, 9}) EXPECT_FALSE(resources[type].empty());
    }

    static void SetUpTestSuite() {
        glob_t found{};
        glob(EQ_WINDOWS_MODULES, 0, nullptr, &found);
        for (std::size_t i = 0; i < found.gl_pathc; ++i) {
            for (PeResource& resource : readPeResources(found.gl_pathv[i]))
                if (rewriters.contains(resource.type))
                    resources[resource.type].try_emplace(std::move(resource.bytes), found.gl_pathv[i]);
        }
        globfree(&found);
    }

    static inline std::map<std::uint32_t, Resources> resources;
};

template <typename Reader>
std::string outputOf(const std::string& bytes) {
    Reader reader;
    reader.Read(bytes.data(), bytes.size());
    return {reinterpret_cast<const char*>(reader.GetOutput().data()), 2 * reader.GetOutput().size()};
}

bool isExtendedDialog(const std::string& bytes) {
    return bytes.compare(2, 2, "\xFF\xFF") == 0;
}

std::string rewrittenDialog(const std::string& bytes) {
    return isExtendedDialog(bytes) ? outputOf<DialogReaderExtended>(bytes) : outputOf<DialogReaderStandard>(bytes);
}

std::string rewrittenMenu(const std::string& bytes) {
    return bytes[0] == 1 ? outputOf<MenuReaderExtended>(bytes) : outputOf<MenuReaderStandard>(bytes);
}

} // namespace

TEST_F(RealTemplates, StayAsTheyAreWithoutASystemFont) {
    standin::setGuiFont("", 0);
    for (const auto& [type, rewriter] : rewriters)
        for (const auto& [bytes, path] : resources[type])
            EXPECT_EQ(rewriteWith(rewriter, bytes).status, PrepUnchanged) << path << ", type " << type;
}

// Compilers fill a resource up to a multiple of four bytes at most.
TEST_F(RealTemplates, AreReadToTheirEnd) {
    const auto expectRead = [](std::size_t size, const std::string& bytes, const std::string& path) {
        EXPECT_TRUE(size <= bytes.size() && bytes.size() < size + 4) << path << ": " << size << " of " << bytes.size();
    };
    for (const auto& [bytes, path] : resources[5]) expectRead(rewrittenDialog(bytes).size(), bytes, path);
    for (const auto& [bytes, path] : resources[4]) expectRead(rewrittenMenu(bytes).size(), bytes, path);
}

// With a font whose name has as many letters as the one that it replaces, nothing but name and size may differ.
TEST_F(RealTemplates, DialogsChangeInTheFontAlone) {
    standin::setGuiFont("MS SHELL DLG", -24);
    const std::string face = TemplateBuilder().text(u"MS SHELL DLG").get();
    int replaced = 0;
    for (const auto& [bytes, path] : resources[5]) {
        SCOPED_TRACE(path);
        const Rewritten result = rewriteWith(PrepareDialogResource, bytes);
        if (result.status == PrepUnchanged) continue;
        ++replaced;
        const std::string output = rewrittenDialog(bytes);
        EXPECT_TRUE(result.is(TemplateBuilder().bytes(output)));
        const std::size_t at = output.find(face);
        ASSERT_NE(at, output.npos);
        std::string expected = bytes.substr(0, output.size());
        expected.replace(at, face.size(), face);
        expected[at - (isExtendedDialog(bytes) ? 6 : 2)] = 18; // points: 24 dots of 96 an inch
        EXPECT_EQ(output, expected);
    }
    EXPECT_GT(replaced, 0);
}
