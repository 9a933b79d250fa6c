# cmake -DOUTPUT=FILE -DROOTS=DIR:FILE:FILE... -P EmbedFiles.cmake
# Writes a C++ source that holds the text of files as the rows of `fabscan::kSimulatorSources`.
# ROOTS: folder, then files relative to it, separated by "|"; several of them by "@".

set(rows "")
string(REPLACE "@" ";" groups "${ROOTS}")
foreach(group IN LISTS groups)
  string(REPLACE "|" ";" files "${group}")
  list(POP_FRONT files root)
  foreach(file IN LISTS files)
    file(READ ${root}/${file} text)
    string(APPEND rows "    {\"${file}\", R\"embedded(${text})embedded\"},\n")
  endforeach()
endforeach()

file(WRITE ${OUTPUT}.new "#include \"simulator_sources.h\"

namespace fabscan {

const SimulatorSource kSimulatorSources[] = {
${rows}    {nullptr, {}},
};

}  // namespace fabscan
")
file(COPY_FILE ${OUTPUT}.new ${OUTPUT} ONLY_IF_DIFFERENT)
file(REMOVE ${OUTPUT}.new)
