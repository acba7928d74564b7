# cpack runs this script before it packs. If SOURCE_DATE_EPOCH is set, all files and folders receive this time, so that
# two builds of the same sources produce the same bytes.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(
    COMMAND find "${CPACK_TEMPORARY_DIRECTORY}" -exec touch --no-dereference --date "@$ENV{SOURCE_DATE_EPOCH}" {} +
    COMMAND_ERROR_IS_FATAL ANY)
endif()
