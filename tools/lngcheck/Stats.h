#pragma once

#include "tools/lngcheck/Findings.h"
#include "tools/lngcheck/LanguageSet.h"

#include <vector>

namespace eq {

namespace lngcheck {

enum class StatsForm { Table, Json };

/// Writes one row per language to standard output: the numbers of keys of the library that the language has and lacks,
/// and the numbers of faults and warnings in its files.
void printStats(const std::vector<Language>& languages, const Findings& findings, StatsForm form);

} // namespace lngcheck

} // namespace eq
