# cmake -DOUTPUT=FILE -DHEADER=FILE -DDECLARATION=TEXT -DROOTS=DIR|FILE|FILE... -P EmbedFiles.cmake
# Writes a C++ source with the text of files as rows of an array: path and text; the path of the last
# row is null. HEADER declares the array, DECLARATION is the text before its `= {`.
# ROOTS: a directory, then files relative to it; several such lists are separated by "@". A directory
# can be followed by ">" and a prefix for the paths.

set(rows "")
string(REPLACE "@" ";" groups "${ROOTS}")
foreach(group IN LISTS groups)
  string(REPLACE "|" ";" files "${group}")
  list(POP_FRONT files root)
  string(REPLACE ">" ";" root "${root}")
  list(LENGTH root parts)
  set(prefix "")
  if(parts EQUAL 2)
    list(POP_BACK root prefix)
  endif()
  foreach(file IN LISTS files)
    file(READ ${root}/${file} text)
    string(APPEND rows "    {\"${prefix}${file}\", R\"embedded(${text})embedded\"},\n")
  endforeach()
endforeach()

file(WRITE ${OUTPUT}.new "#include \"${HEADER}\"

namespace fabscan {

${DECLARATION} = {
${rows}    {nullptr, {}},
};

}  // namespace fabscan
")
file(COPY_FILE ${OUTPUT}.new ${OUTPUT} ONLY_IF_DIFFERENT)
file(REMOVE ${OUTPUT}.new)
