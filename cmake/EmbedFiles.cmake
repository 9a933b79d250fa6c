# cmake -DOUTPUT=FILE -DHEADER=FILE -DDECLARATION=TEXT -DROOTS=DIR|FILE|FILE... -P EmbedFiles.cmake
# Writes a C++ source that holds the text of files as the rows of an array: path and text, the last
# row's path null. HEADER declares the array, DECLARATION is the text before its `= {`.
# ROOTS: directory, then files relative to it; several of them are separated by "@". The directory may
# be followed by ">" and what the paths begin with.

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
