# Fails where a bundled snapshot is not what its maker writes.

file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH})
execute_process(COMMAND ${MAKER} ${SCRATCH} COMMAND_ERROR_IS_FATAL ANY)

file(GLOB made RELATIVE ${SCRATCH} ${SCRATCH}/*)
file(GLOB bundled RELATIVE ${EXAMPLES} ${EXAMPLES}/*.jsonl)
set(stale "")
foreach(name IN LISTS made bundled)
  execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${SCRATCH}/${name} ${EXAMPLES}/${name}
    RESULT_VARIABLE differs OUTPUT_QUIET ERROR_QUIET)
  if(differs)
    list(APPEND stale examples/${name})
  endif()
endforeach()
if(stale OR NOT made)
  list(REMOVE_DUPLICATES stale)
  message(FATAL_ERROR "Stale: ${stale}. './run golden' writes them afresh.")
endif()
