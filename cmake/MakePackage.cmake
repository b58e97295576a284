# Run by CPack once the installed tree is in CPACK_TEMPORARY_DIRECTORY: makes the ZIP. CPack's own would keep the order
# in which the disk lists the files, and who built it.

if(DEFINED ENV{SOURCE_DATE_EPOCH})
  set(time "$ENV{SOURCE_DATE_EPOCH}")
else()
  set(time 315532800)  # the first moment that a ZIP can express, for sources without a history
  execute_process(COMMAND git log -1 --format=%ct WORKING_DIRECTORY "${CPACK_SPEECH_SOURCE_DIR}"
    OUTPUT_VARIABLE commit_time OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE git_result)
  if(git_result EQUAL 0)
    set(time ${commit_time})
  endif()
endif()

set(package "${CPACK_PACKAGE_DIRECTORY}/${CPACK_PACKAGE_FILE_NAME}.zip")
execute_process(COMMAND "${CPACK_SPEECH_PYTHON}" "${CPACK_SPEECH_SOURCE_DIR}/cmake/make_zip.py"
  "${CPACK_TEMPORARY_DIRECTORY}" "${package}" "${time}" COMMAND_ERROR_IS_FATAL ANY)
list(APPEND CPACK_EXTERNAL_BUILT_PACKAGES "${package}")
