#pragma once

#include "tools/lngcheck/Findings.h"
#include "tools/lngcheck/LanguageFile.h"

#include <vector>

namespace eq {

/// The checks of a file's form. Each function adds its findings.
namespace lngcheck {

// Names.cpp

/// A name from which the library takes no language, or a language that Windows does not have.
void checkName(const LanguageFile& file, Findings& findings);

// Contexts.cpp

/// Returns the contexts that are most probably meant to be one of the two that the library reads: the name is similar,
/// or the library's own keys are below it.
[[nodiscard]] std::vector<ContextLine> misspeltContexts(const LanguageFile& file);

/// Texts that are lost because the name of their context is misspelt. These are faults.
void checkContexts(const LanguageFile& file, Findings& findings);

/// Keys defined twice, and keys below the library's contexts that it does not look up.
void checkKeys(const LanguageFile& file, Findings& findings);

// Encoding.cpp

/// Texts that are saved in UTF-8. In a single-byte code page they show two characters for one.
void checkUtf8(const LanguageFile& file, Findings& findings);

/// Backslashes after a letter of two bytes. The library finds such letters by the system's code page, which need not be
/// that of the file.
void checkBackslashes(const LanguageFile& file, Findings& findings);

// Accelerators.cpp

/// Accelerator lines whose right side is no accelerator.
void checkAccelerators(const LanguageFile& file, Findings& findings);

} // namespace lngcheck

} // namespace eq
