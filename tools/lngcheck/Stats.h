#pragma once

#include "tools/lngcheck/Findings.h"
#include "tools/lngcheck/LanguageSet.h"

#include <vector>

namespace eq {

namespace lngcheck {

enum class StatsForm { Table, Json };

/// Writes to standard output, for each language, how many keys of the library it has and lacks, and how many faults and
/// warnings its files have.
void printStats(const std::vector<Language>& languages, const Findings& findings, StatsForm form);

} // namespace lngcheck

} // namespace eq
