#include "wedge/Codepages.h"

#include "wedge/CodepageTable.h"

std::span<const CodepagePair> codepagePairs() noexcept {
    return codepage_table::Pairs;
}

bool CodepageFitsLanguage(long codepage, WORD language) noexcept {
    return codepage_table::isPair(codepage, language);
}
