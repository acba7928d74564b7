#include "wedge/resources/DialogReader.h"

#include "wedge/resources/RewriteResult.h"
#include "wedge/resources/prep_exception.h"

#include <algorithm>
#include <cwctype>
#include <memory>

namespace {

constexpr std::uint16_t Empty = 0x0000;
constexpr std::uint16_t Ordinal = 0xFFFF;
constexpr std::uint16_t ExtendedSignature = 0xFFFF;

constexpr std::uint32_t SetFontStyle = 0x40;   // DS_SETFONT
constexpr std::uint32_t ShellFontStyle = 0x48; // DS_SETFONT | DS_FIXEDSYS

// DLGTEMPLATE: style and extended style, cdit, x, y, cx, cy.
constexpr std::size_t StandardHeaderSize = 18;
constexpr std::size_t StandardItemSize = 18;
constexpr std::size_t StandardStyle = 0;
constexpr std::size_t StandardCount = 8;

// DLGTEMPLATEEX: dlgVer and signature, helpID, exStyle, style, cDlgItems, x, y, cx, cy.
constexpr std::size_t ExtendedHeaderSize = 26;
constexpr std::size_t ExtendedItemSize = 24;
constexpr std::size_t ExtendedStyle = 12;
constexpr std::size_t ExtendedCount = 16;
constexpr std::size_t ExtendedFontWords = 2; // weight; italic and charset

constexpr std::u16string_view ReplacedFace = u"MS Shell Dlg";

bool equalIgnoringCase(const std::u16string& a, std::u16string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char16_t x, char16_t y) { return std::towupper(x) == std::towupper(y); });
}

std::unique_ptr<DialogReader> readerFor(const void* resource, std::size_t size) {
    // A template too short for its signature fails in either reader.
    const auto* const bytes = static_cast<const unsigned char*>(resource);
    const bool extended = size >= 4 && (bytes[2] | bytes[3] << 8U) == ExtendedSignature;
    if (extended) return std::make_unique<DialogReaderExtended>();
    return std::make_unique<DialogReaderStandard>();
}

} // namespace

void DialogReaderStandard::Read(const void* input_address, std::size_t input_size) {
    begin(input_address, input_size);
    const std::uint32_t style = peekDoubleWord(StandardStyle);
    const unsigned count = peekWord(StandardCount);
    copyBytes(StandardHeaderSize);
    readNames();
    if ((style & SetFontStyle) != 0) readFont(0);
    readItems(count, StandardItemSize);
}

void DialogReaderExtended::Read(const void* input_address, std::size_t input_size) {
    begin(input_address, input_size);
    const std::uint32_t style = peekDoubleWord(ExtendedStyle);
    const unsigned count = peekWord(ExtendedCount);
    copyBytes(ExtendedHeaderSize);
    readNames();
    if ((style & ShellFontStyle) != 0) readFont(ExtendedFontWords);
    readItems(count, ExtendedItemSize);
}

void DialogReader::readNames() {
    ReadStringOrOrdinal(false); // menu
    ReadStringOrOrdinal(false); // window class
    ReadString(true);           // caption
}

void DialogReader::readFont(std::size_t headerWords) {
    checkRange();
    std::uint16_t pointSize = takeWord();
    std::u16string header;
    for (std::size_t i = 0; i < headerWords; ++i) header.push_back(static_cast<char16_t>(takeWord()));
    std::u16string face = takeText();

    std::wstring systemFace;
    std::uint16_t systemPoints = 0;
    SystemDialogFont(systemFace, systemPoints);
    if (!systemFace.empty() && equalIgnoringCase(face, ReplacedFace)) {
        face = unitsFromWide(systemFace);
        pointSize = systemPoints;
        noteChange();
    }
    appendWord(pointSize);
    for (const char16_t word : header) appendWord(word);
    appendText(face);
}

void DialogReader::readItems(unsigned count, std::size_t fixedSize) {
    for (; count > 0; --count) {
        alignOutput();
        alignInput();
        readItem(fixedSize);
    }
}

void DialogReader::readItem(std::size_t fixedSize) {
    checkRange();
    copyBytes(fixedSize);
    ReadStringOrOrdinal(false); // window class
    ReadStringOrOrdinal(true);  // title
    const std::size_t creationData = peekWord();
    copyBytes(sizeof(std::uint16_t) + creationData);
}

void DialogReader::ReadStringOrOrdinal(bool translate) {
    checkRange();
    switch (peekWord()) {
    case Empty:
        copyBytes(sizeof Empty);
        break;
    case Ordinal:
        copyBytes(2 * sizeof Ordinal);
        break;
    default:
        ReadString(translate);
    }
}

void DialogReader::ReadString(bool translate) {
    checkRange();
    const std::u16string text = takeText();
    appendText(translate && !text.empty() ? expanded(text) : text);
}

PrepStatus PrepareDialogResource(const void* pDialogResource, std::size_t size, void** ppNewResource) noexcept {
    return guardedRewrite([&] {
        if (pDialogResource == nullptr) throw prep_exception("NULL == pDialogResource");
        if (ppNewResource == nullptr) throw prep_exception("NULL == ppNewResource");
        const std::unique_ptr<DialogReader> reader = readerFor(pDialogResource, size);
        reader->Read(pDialogResource, size);
        return finishedTemplate(*reader, ppNewResource);
    });
}

PrepStatus PrepareDialogResource(const void* pDialogResource, void** ppNewResource) noexcept {
    return PrepareDialogResource(pDialogResource, TemplateRange, ppNewResource);
}
