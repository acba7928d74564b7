#include "wedge/resources/DialogReader.h"

#include "support/AsciiText.h"
#include "wedge/resources/RewriteResult.h"
#include "wedge/resources/prep_exception.h"

#include <memory>
#include <string_view>

namespace eq {

namespace {

constexpr std::uint16_t Ordinal = 0xFFFF;
constexpr std::uint16_t ExtendedSignature = 0xFFFF;

constexpr std::uint32_t SetFontStyle = 0x40;   // DS_SETFONT
constexpr std::uint32_t ShellFontStyle = 0x48; // DS_SETFONT | DS_FIXEDSYS

constexpr std::size_t PlaceSize = 8; // x, y, cx, cy
// style, dwExtendedStyle, place, id
constexpr std::size_t StandardItemSize = 4 + 4 + PlaceSize + 2;
// helpID, exStyle, style, place, id
constexpr std::size_t ExtendedItemSize = 4 + 4 + 4 + PlaceSize + 4;
constexpr std::size_t ExtendedFontHeader = 2 + 1 + 1; // weight, italic, charset

constexpr std::wstring_view ReplacedFace = L"MS Shell Dlg";

std::unique_ptr<DialogReader> dialogReaderFor(BinaryReader input) {
    input.skip(2); // dlgVer
    if (input.read<std::uint16_t>() == ExtendedSignature) return std::make_unique<DialogReaderExtended>();
    return std::make_unique<DialogReaderStandard>();
}

} // namespace

void DialogReaderStandard::readTemplate() {
    const auto style = copy<std::uint32_t>();
    copyBytes(4); // dwExtendedStyle
    const auto count = copy<std::uint16_t>();
    copyBytes(PlaceSize);
    readNames();
    if ((style & SetFontStyle) != 0) readFont(0);
    readItems(count, StandardItemSize);
}

void DialogReaderExtended::readTemplate() {
    copyBytes(2 + 2 + 4 + 4); // dlgVer, signature, helpID, exStyle
    const auto style = copy<std::uint32_t>();
    const auto count = copy<std::uint16_t>();
    copyBytes(PlaceSize);
    readNames();
    if ((style & ShellFontStyle) != 0) readFont(ExtendedFontHeader);
    readItems(count, ExtendedItemSize);
}

void DialogReader::readNames() {
    ReadStringOrOrdinal(false); // menu
    ReadStringOrOrdinal(false); // window class
    checkRange();
    ReadString(true); // caption
}

void DialogReader::readFont(std::size_t headerSize) {
    checkRange();
    const std::size_t pointSizeOffset = m_output.offset();
    copyBytes(sizeof(std::uint16_t) + headerSize);
    std::wstring face = m_input.readText();

    std::wstring systemFace;
    std::uint16_t systemPoints = 0;
    SystemDialogFont(systemFace, systemPoints);
    if (!systemFace.empty() && equalNoCase(face, ReplacedFace)) {
        face = systemFace;
        m_output.patch(pointSizeOffset, systemPoints);
        m_changed = true;
    }
    m_output.writeText(face);
    m_output.write(std::uint16_t{0});
}

void DialogReader::readItems(unsigned count, std::size_t fixedSize) {
    for (; count > 0; --count) {
        align();
        copyBytes(fixedSize);             // the range of the names, which follow, is checked
        ReadStringOrOrdinal(false);       // window class
        ReadStringOrOrdinal(true);        // title
        copyBytes(copy<std::uint16_t>()); // creation data
    }
}

void DialogReader::ReadStringOrOrdinal(bool translate) {
    checkRange();
    if (m_input.peek<std::uint16_t>() == Ordinal) {
        copyBytes(2 * sizeof Ordinal);
    } else {
        ReadString(translate);
    }
}

PrepStatus PrepareDialogResource(const void* pDialogResource, std::size_t size, void** ppNewResource) noexcept {
    return guardedRewrite([&] {
        if (pDialogResource == nullptr) throw prep_exception("NULL == pDialogResource");
        if (ppNewResource == nullptr) throw prep_exception("NULL == ppNewResource");
        const std::unique_ptr<DialogReader> reader = dialogReaderFor(BinaryReader(pDialogResource, size));
        reader->Read(pDialogResource, size);
        return finishedTemplate(*reader, ppNewResource);
    });
}

PrepStatus PrepareDialogResource(const void* pDialogResource, void** ppNewResource) noexcept {
    return PrepareDialogResource(pDialogResource, TemplateRange, ppNewResource);
}

} // namespace eq
