#include "wedge/Codepages.h"

#include "wedge/CodepageTable.h"

namespace eq {

std::span<const CodepagePair> codepagePairs() noexcept {
    return codepage_table::Pairs;
}

bool CodepageFitsLanguage(long codepage, WORD language) noexcept {
    return codepage_table::isPair(codepage, language);
}

} // namespace eq
