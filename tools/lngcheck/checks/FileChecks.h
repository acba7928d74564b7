#pragma once

#include "tools/lngcheck/Findings.h"
#include "tools/lngcheck/LanguageFile.h"

#include <vector>

namespace eq {

/// Checks of the form of a file. Each check adds its findings.
namespace lngcheck {

// Names.cpp

/// Finds a file name without a language, or with a language that Windows does not know.
void checkName(const LanguageFile& file, Findings& findings);

// Contexts.cpp

/// Returns the contexts that were probably intended as one of the two contexts of the library: the name is similar, or
/// the context contains keys of the library's own context.
[[nodiscard]] std::vector<ContextLine> misspeltContexts(const LanguageFile& file);

/// Finds texts that are lost because the name of their context is misspelt. These are faults.
void checkContexts(const LanguageFile& file, Findings& findings);

/// Finds keys that are defined twice, and keys in the library's contexts that the library does not look up.
void checkKeys(const LanguageFile& file, Findings& findings);

// Encoding.cpp

/// Finds texts that are saved in UTF-8. The library shows two or more wrong characters for one letter of such a text.
void checkUtf8(const LanguageFile& file, Findings& findings);

/// Finds backslashes in or after letters of two bytes. The library recognises such letters by the system's code page,
/// which may differ from that of the file.
void checkBackslashes(const LanguageFile& file, Findings& findings);

// Accelerators.cpp

/// Finds accelerator lines whose right side is not an accelerator.
void checkAccelerators(const LanguageFile& file, Findings& findings);

} // namespace lngcheck

} // namespace eq
