# Writes RESULT, a language file, from SOURCE, the same in UTF-8, by the program ICONV. Line ends become those that
# every Windows editor shows. A character that the code page lacks is an error, and no file is left then.
file(STRINGS "${SOURCE}" tag REGEX "^<CODEPAGE [0-9]+>$" LIMIT_COUNT 1 ENCODING UTF-8)
if(NOT tag MATCHES "[0-9]+")
  message(FATAL_ERROR "${SOURCE}: no <CODEPAGE> tag")
endif()
set(codepage "CP${CMAKE_MATCH_0}")

set(part "${RESULT}.part")
execute_process(COMMAND sed "s/\\r*$/\\r/" "${SOURCE}" OUTPUT_FILE "${part}.utf8" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${ICONV}" -f UTF-8 -t "${codepage}" "${part}.utf8"
  OUTPUT_FILE "${part}" RESULT_VARIABLE status ERROR_VARIABLE problem)
file(REMOVE "${part}.utf8")
if(NOT status EQUAL 0)
  file(REMOVE "${part}")
  message(FATAL_ERROR "${SOURCE}, to ${codepage}: ${problem}")
endif()
file(RENAME "${part}" "${RESULT}")
