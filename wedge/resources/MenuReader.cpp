#include "wedge/resources/MenuReader.h"

#include "wedge/resources/RewriteResult.h"
#include "wedge/resources/prep_exception.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace eq {

namespace {

constexpr unsigned PopupOption = 0x10; // MF_POPUP
constexpr unsigned EndOption = 0x80;   // MF_END
constexpr unsigned PopupInfo = 0x01;
constexpr unsigned EndInfo = 0x80;

std::unique_ptr<MenuReader> menuReaderFor(BinaryReader input) {
    switch (input.read<std::uint16_t>()) {
    case 0:
        return std::make_unique<MenuReaderStandard>();
    case 1:
        return std::make_unique<MenuReaderExtended>();
    default:
        return nullptr;
    }
}

} // namespace

void MenuReader::readTemplate() {
    ReadHeader();
    ReadItems();
    checkRange(); // each item begins before the end of the template
}

// Items begin at even offsets, so a gap of odd size is refused.
void MenuReader::copyHeader(std::size_t leastGap) {
    copyBytes(2); // version
    const auto gap = copy<std::uint16_t>();
    if (gap < leastGap || gap % 2 != 0) fail();
    copyBytes(gap);
}

void MenuReader::ReadItems() {
    // One element per open level: whether the popup that contains the level is the last item of its own level.
    std::vector<bool> openPopups;
    for (;;) {
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

MenuReader::ItemPlace MenuReaderStandard::readItem() {
    const auto option = copy<std::uint16_t>();
    const bool isPopup = (option & PopupOption) != 0;
    if (!isPopup) copyBytes(2); // mtID
    ReadString(true);
    return {isPopup, (option & EndOption) != 0};
}

MenuReader::ItemPlace MenuReaderExtended::readItem() {
    align();
    copyBytes(4 + 4 + 4); // dwType, dwState, uId
    const auto info = copy<std::uint16_t>();
    const bool isPopup = (info & PopupInfo) != 0;
    ReadString(true);
    if (isPopup) {
        align();
        copyBytes(4); // dwHelpId
    }
    return {isPopup, (info & EndInfo) != 0};
}

PrepStatus PrepareMenuResource(const void* pMenuResource, std::size_t size, void** ppNewResource) noexcept {
    return guardedRewrite([&] {
        if (pMenuResource == nullptr) throw prep_exception("NULL == pMenuResource");
        if (ppNewResource == nullptr) throw prep_exception("NULL == ppNewResource");
        const std::unique_ptr<MenuReader> reader = menuReaderFor(BinaryReader(pMenuResource, size));
        if (!reader) return PrepFailed;
        reader->Read(pMenuResource, size);
        return finishedTemplate(*reader, ppNewResource);
    });
}

PrepStatus PrepareMenuResource(const void* pMenuResource, void** ppNewResource) noexcept {
    return PrepareMenuResource(pMenuResource, TemplateRange, ppNewResource);
}

} // namespace eq
