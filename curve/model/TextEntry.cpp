#include "curve/model/TextEntry.h"

namespace eq {

namespace {

bool continues(char c) noexcept {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80; // a continuation byte of UTF-8
}

} // namespace

void TextEntry::insert(std::string_view typed) {
    eraseSelection();
    if (text.size() + typed.size() > Most) return;
    text.insert(cursor, typed);
    cursor += typed.size();
    isInvalid = false;
}

void TextEntry::eraseBefore() {
    isInvalid = false;
    if (isSelected) return eraseSelection();
    const std::size_t begin = previous();
    text.erase(begin, cursor - begin);
    cursor = begin;
}

void TextEntry::eraseAfter() {
    isInvalid = false;
    if (isSelected) return eraseSelection();
    text.erase(cursor, next() - cursor);
}

void TextEntry::moveLeft() {
    moveTo(isSelected ? 0 : previous());
}

void TextEntry::moveRight() {
    moveTo(isSelected ? text.size() : next());
}

void TextEntry::moveTo(std::size_t byte) {
    cursor = byte < text.size() ? byte : text.size();
    isSelected = false;
}

void TextEntry::eraseSelection() {
    if (!isSelected) return;
    text.clear();
    cursor = 0;
    isSelected = false;
}

std::size_t TextEntry::previous() const noexcept {
    std::size_t place = cursor;
    while (place > 0 && continues(text[--place])) {
    }
    return place;
}

std::size_t TextEntry::next() const noexcept {
    std::size_t place = cursor;
    if (place < text.size()) ++place;
    while (place < text.size() && continues(text[place])) ++place;
    return place;
}

} // namespace eq
