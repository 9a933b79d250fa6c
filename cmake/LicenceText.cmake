# The licence block of the generated files names the owner of the generated code. Organisations
# that ship the tool set these; the generator's sources have the defaults and check the form at compile
# time.

set(FABSCAN_LICENCE_HOLDER "" CACHE STRING "Copyright holder of the generated files")
set(FABSCAN_LICENCE_IDENTIFIER "" CACHE STRING "Licence identifier, written after LicenseRef-")
set(FABSCAN_LICENCE_NOTICE "" CACHE STRING "The notice: exactly six lines, separated by semicolons")

set(licence_lines "")
foreach(item HOLDER IDENTIFIER)
  if(FABSCAN_LICENCE_${item})
    string(APPEND licence_lines
      "#define FABSCAN_LICENCE_${item} R\"licence(${FABSCAN_LICENCE_${item}})licence\"\n")
  endif()
endforeach()
if(FABSCAN_LICENCE_NOTICE)
  set(notice "")
  foreach(line IN LISTS FABSCAN_LICENCE_NOTICE)
    list(APPEND notice "R\"licence(${line})licence\"")
  endforeach()
  list(JOIN notice ", " notice)
  string(APPEND licence_lines "#define FABSCAN_LICENCE_NOTICE ${notice}\n")
endif()

file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/generated/licence_text.h CONTENT "@licence_lines@" @ONLY)
