# Converts SOURCE, a language source in UTF-8, to the language file RESULT with the program ICONV. CODEPAGE is the
# number of the result's code page, or ASCII. For ASCII, the result has no <CODEPAGE> tag and no line with a character
# that is not ASCII. Each line ends with CR LF, which every Windows editor shows correctly. The result has no context
# [LV2], which is the last context of a source, because the library does not read it. A character that is not in the
# code page is an error; then the script leaves no file.
set(edit "/^\\[LV2\\]/,\$d; s/\\r*$/\\r/")
set(charset "CP${CODEPAGE}")
if(CODEPAGE STREQUAL ASCII)
  string(PREPEND edit "/^<CODEPAGE/d; /[^\\t\\r -~]/d; /\\\\x[89A-Fa-f]/d; ")
  set(charset ASCII)
endif()

set(part "${RESULT}.part")
execute_process(COMMAND "${CMAKE_COMMAND}" -E env LC_ALL=C sed "${edit}" "${SOURCE}"
  OUTPUT_FILE "${part}.utf8" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${ICONV}" -f UTF-8 -t "${charset}" "${part}.utf8"
  OUTPUT_FILE "${part}" RESULT_VARIABLE status ERROR_VARIABLE problem)
file(REMOVE "${part}.utf8")
if(NOT status EQUAL 0)
  file(REMOVE "${part}")
  message(FATAL_ERROR "${SOURCE}, to ${charset}: ${problem}")
endif()
file(RENAME "${part}" "${RESULT}")
