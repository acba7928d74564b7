#include "wedge/resources/MenuReader.h"

#include "wedge/resources/RewriteResult.h"
#include "wedge/resources/prep_exception.h"

#include <memory>
#include <vector>

namespace {

// Standard form: mtOption, mtID (not in a popup), mtString.
constexpr unsigned PopupOption = 0x10; // MF_POPUP
constexpr unsigned EndOption = 0x80;   // MF_END

// Extended form: dwType, dwState, uId, bResInfo, szText; dwHelpId behind a popup's text.
constexpr std::size_t ResInfo = 12;
constexpr std::size_t ExtendedItemSize = 14;
constexpr std::size_t HelpIdSize = 4;
constexpr unsigned PopupInfo = 0x01;
constexpr unsigned EndInfo = 0x80;

constexpr std::size_t HeaderWordsSize = 4; // version, and offset of the first item from here

std::unique_ptr<MenuReader> readerFor(const void* resource, std::size_t size) {
    const auto* const bytes = static_cast<const unsigned char*>(resource);
    if (size < 2 || bytes[1] != 0) return nullptr;
    if (bytes[0] == 0) return std::make_unique<MenuReaderStandard>();
    if (bytes[0] == 1) return std::make_unique<MenuReaderExtended>();
    return nullptr;
}

} // namespace

void MenuReader::Read(const void* input_address, std::size_t input_size) {
    begin(input_address, input_size);
    ReadHeader();
    ReadItems();
    checkRange();
}

void MenuReader::ReadItems() {
    // For each level that is open: whether the popup that holds it is the last item of its own level.
    std::vector<bool> openPopups;
    for (;;) {
        checkRange();
        const ItemPlace place = readItem();
        if (place.isPopup) {
            openPopups.push_back(place.isLast);
            continue;
        }
        bool levelEnds = place.isLast;
        while (levelEnds) {
            if (openPopups.empty()) return;
            levelEnds = openPopups.back();
            openPopups.pop_back();
        }
    }
}

// A gap in front of the first item is carried over. One of an odd size cannot be: items begin on whole words.
void MenuReader::copyHeader(std::size_t leastGap) {
    const std::size_t gap = peekWord(2);
    if (gap < leastGap || gap % 2 != 0) fail();
    copyBytes(HeaderWordsSize + gap);
}

void MenuReader::appendExpanded() {
    const std::u16string text = takeText();
    appendText(text.empty() ? text : expanded(text));
}

void MenuReaderStandard::ReadHeader() {
    copyHeader(0);
}

MenuReader::ItemPlace MenuReaderStandard::readItem() {
    const unsigned option = peekWord();
    const bool isPopup = (option & PopupOption) != 0;
    copyBytes(isPopup ? 2 : 4);
    appendExpanded();
    return {isPopup, (option & EndOption) != 0};
}

void MenuReaderExtended::ReadHeader() {
    copyHeader(HelpIdSize);
}

MenuReader::ItemPlace MenuReaderExtended::readItem() {
    alignOutput();
    alignInput();
    checkRange();
    const unsigned info = peekWord(ResInfo);
    const bool isPopup = (info & PopupInfo) != 0;
    copyBytes(ExtendedItemSize);
    appendExpanded();
    if (isPopup) {
        alignOutput();
        alignInput();
        copyBytes(HelpIdSize);
    }
    return {isPopup, (info & EndInfo) != 0};
}

PrepStatus PrepareMenuResource(const void* pMenuResource, std::size_t size, void** ppNewResource) noexcept {
    return guardedRewrite([&] {
        if (pMenuResource == nullptr) throw prep_exception("NULL == pMenuResource");
        if (ppNewResource == nullptr) throw prep_exception("NULL == ppNewResource");
        const std::unique_ptr<MenuReader> reader = readerFor(pMenuResource, size);
        if (!reader) return PrepFailed;
        reader->Read(pMenuResource, size);
        return finishedTemplate(*reader, ppNewResource);
    });
}

PrepStatus PrepareMenuResource(const void* pMenuResource, void** ppNewResource) noexcept {
    return PrepareMenuResource(pMenuResource, TemplateRange, ppNewResource);
}
