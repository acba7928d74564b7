# Writes RESULT, a language file, from SOURCE, the same in UTF-8, by the program ICONV. CODEPAGE is the number of the
# result's code page, or ASCII. With ASCII the <CODEPAGE> tag and all lines with other characters are left out. Line ends
# become those that every Windows editor shows. The context [LV2] at the end is left out, since the library does not look it
# up. A character that the code page lacks is an error, and no file is left then.
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
