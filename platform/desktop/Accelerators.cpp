#include "platform/desktop/Accelerators.h"

#include "platform/desktop/ReplacedFunctions.h"
#include "platform/standin/CodePages.h"
#include "platform/standin/HandleTable.h"
#include "platform/standin/Refuse.h"

#include <algorithm>
#include <vector>

namespace {

using eq::standin::refuse;

using Table = std::vector<ACCEL>;

// On Windows the system outlives every module, so a module may destroy its tables while it is unloaded. This priority
// constructs `tables` before the program's other static objects, and therefore destroys it after them.
[[gnu::init_priority(101)]] eq::standin::HandleTable<Table> tables;

std::shared_ptr<Table> findTable(HACCEL handle) noexcept {
    auto table = tables.find(handle);
    if (!table) SetLastError(ERROR_INVALID_ACCEL_HANDLE);
    return table;
}

void widenCharacter(ACCEL& record) noexcept {
    if ((record.fVirt & FVIRTKEY) != 0) return;
    const char narrow = static_cast<char>(record.key);
    wchar_t wide = 0;
    MultiByteToWideChar(CP_ACP, 0, &narrow, 1, &wide, 1);
    record.key = static_cast<WORD>(wide); // NOLINT(bugprone-signed-char-misuse): not a char
}

HACCEL createTable(const ACCEL* records, int count, bool narrow) {
    if (!records || count < 1) return refuse(ERROR_INVALID_PARAMETER);
    auto table = std::make_shared<Table>(records, records + count);
    if (narrow) std::for_each(table->begin(), table->end(), widenCharacter);
    return static_cast<HACCEL>(tables.add(std::move(table)));
}

HACCEL tryToCreateTable(const ACCEL* records, int count, bool narrow) noexcept try {
    return createTable(records, count, narrow);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

} // namespace

HACCEL WINAPI CreateAcceleratorTableA(LPACCEL records, int count) noexcept {
    return tryToCreateTable(records, count, true);
}

HACCEL WINAPI CreateAcceleratorTableW(LPACCEL records, int count) noexcept {
    return tryToCreateTable(records, count, false);
}

int WINAPI CopyAcceleratorTableW(HACCEL handle, LPACCEL buffer, int size) noexcept {
    const auto table = findTable(handle);
    if (!table) return 0;
    const int count = static_cast<int>(table->size());
    if (!buffer) return count;
    const int copied = std::clamp(size, 0, count);
    std::copy_n(table->begin(), copied, buffer);
    return copied;
}

BOOL WINAPI eq::standin::system::DestroyAcceleratorTable(HACCEL table) noexcept {
    if (tables.remove(table)) return TRUE;
    return refuse(ERROR_INVALID_ACCEL_HANDLE);
}
