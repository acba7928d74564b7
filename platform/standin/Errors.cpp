#include "platform/standin/Errors.h"

#include "platform/standin/Refuse.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <string_view>

namespace {

using eq::standin::refuse;

thread_local DWORD lastError = NO_ERROR;

struct ErrorText {
    LONG code;
    std::string_view text;
};

constexpr std::array errorTexts = {
    ErrorText{ERROR_SUCCESS, "The operation completed successfully.\r\n"},
    ErrorText{ERROR_INVALID_FUNCTION, "Incorrect function.\r\n"},
    ErrorText{ERROR_FILE_NOT_FOUND, "The system cannot find the file specified.\r\n"},
    ErrorText{ERROR_PATH_NOT_FOUND, "The system cannot find the path specified.\r\n"},
    ErrorText{ERROR_TOO_MANY_OPEN_FILES, "The system cannot open the file.\r\n"},
    ErrorText{ERROR_ACCESS_DENIED, "Access is denied.\r\n"},
    ErrorText{ERROR_INVALID_HANDLE, "The handle is invalid.\r\n"},
    ErrorText{ERROR_NOT_ENOUGH_MEMORY, "Not enough memory resources are available to process this command.\r\n"},
    ErrorText{ERROR_INVALID_DATA, "The data is invalid.\r\n"},
    ErrorText{ERROR_OUTOFMEMORY, "Not enough memory resources are available to complete this operation.\r\n"},
    ErrorText{ERROR_NO_MORE_FILES, "There are no more files.\r\n"},
    ErrorText{ERROR_WRITE_FAULT, "The system cannot write to the specified device.\r\n"},
    ErrorText{ERROR_GEN_FAILURE, "A device attached to the system is not functioning.\r\n"},
    ErrorText{ERROR_SHARING_VIOLATION,
              "The process cannot access the file because it is being used by another process.\r\n"},
    ErrorText{ERROR_NOT_SUPPORTED, "The request is not supported.\r\n"},
    ErrorText{ERROR_INVALID_PARAMETER, "The parameter is incorrect.\r\n"},
    ErrorText{ERROR_CALL_NOT_IMPLEMENTED, "This function is not supported on this system.\r\n"},
    ErrorText{ERROR_INSUFFICIENT_BUFFER, "The data area passed to a system call is too small.\r\n"},
    ErrorText{ERROR_INVALID_NAME, "The filename, directory name, or volume label syntax is incorrect.\r\n"},
    ErrorText{ERROR_MOD_NOT_FOUND, "The specified module could not be found.\r\n"},
    ErrorText{ERROR_PROC_NOT_FOUND, "The specified procedure could not be found.\r\n"},
    ErrorText{ERROR_FILENAME_EXCED_RANGE, "The filename or extension is too long.\r\n"},
    ErrorText{ERROR_MORE_DATA, "More data is available.\r\n"},
    ErrorText{ERROR_NOT_OWNER, "Attempt to release mutex not owned by caller.\r\n"},
    ErrorText{ERROR_INVALID_FLAGS, "Invalid flags.\r\n"},
    ErrorText{ERROR_NO_UNICODE_TRANSLATION,
              "No mapping for the Unicode character exists in the target multi-byte code page.\r\n"},
    ErrorText{ERROR_UNKNOWN_REVISION, "The revision level is unknown.\r\n"},
    ErrorText{ERROR_INVALID_SECURITY_DESCR, "The security descriptor structure is invalid.\r\n"},
    ErrorText{ERROR_INVALID_WINDOW_HANDLE, "Invalid window handle.\r\n"},
    ErrorText{ERROR_INVALID_MENU_HANDLE, "Invalid menu handle.\r\n"},
    ErrorText{ERROR_INVALID_ACCEL_HANDLE, "Invalid accelerator table handle.\r\n"},
    ErrorText{ERROR_TLW_WITH_WSCHILD, "Cannot create a top-level child window.\r\n"},
    ErrorText{ERROR_WINDOW_OF_OTHER_THREAD, "Invalid window; it belongs to other thread.\r\n"},
    ErrorText{ERROR_CLASS_ALREADY_EXISTS, "Class already exists.\r\n"},
    ErrorText{ERROR_CLASS_DOES_NOT_EXIST, "Class does not exist.\r\n"},
    ErrorText{ERROR_CLASS_HAS_WINDOWS, "Class still has open windows.\r\n"},
    ErrorText{ERROR_INVALID_INDEX, "Invalid index.\r\n"},
    ErrorText{ERROR_CONTROL_ID_NOT_FOUND, "Control ID not found.\r\n"},
    ErrorText{ERROR_MENU_ITEM_NOT_FOUND, "A menu item was not found.\r\n"},
};

// Ascending codes are also unique codes. The look-up finds only the first row of a code.
static_assert(std::ranges::adjacent_find(errorTexts, std::ranges::greater_equal{}, &ErrorText::code) ==
              errorTexts.end());

} // namespace

DWORD WINAPI GetLastError() noexcept {
    return lastError;
}

void WINAPI SetLastError(DWORD code) noexcept {
    lastError = code;
}

DWORD WINAPI FormatMessageA(DWORD flags, LPCVOID /*source*/, DWORD code, DWORD /*language*/, LPSTR buffer, DWORD size,
                            void* /*arguments*/) noexcept {
    if ((flags & ~FORMAT_MESSAGE_IGNORE_INSERTS) != FORMAT_MESSAGE_FROM_SYSTEM || !buffer)
        return refuse(ERROR_INVALID_PARAMETER);

    const auto* const found = std::find_if(errorTexts.begin(), errorTexts.end(),
                                           [code](const ErrorText& row) { return DWORD(row.code) == code; });
    if (found == errorTexts.end()) return refuse(ERROR_MR_MID_NOT_FOUND);
    if (found->text.size() >= size) return refuse(ERROR_INSUFFICIENT_BUFFER);

    std::memcpy(buffer, found->text.data(), found->text.size());
    buffer[found->text.size()] = '\0';
    return static_cast<DWORD>(found->text.size());
}
