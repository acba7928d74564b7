# cpack reads this before it packs. With SOURCE_DATE_EPOCH all files and folders have that time, so that two builds of
# the same sources give the same bytes.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(
    COMMAND find "${CPACK_TEMPORARY_DIRECTORY}" -exec touch --no-dereference --date "@$ENV{SOURCE_DATE_EPOCH}" {} +
    COMMAND_ERROR_IS_FATAL ANY)
endif()
