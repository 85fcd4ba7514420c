# Writes a header with the texts of files as constants, to be put into a program.
#   OUTPUT  the header;  GUARD, NAMESPACE
#   TEXTS   NAME=FILE[+FILE...], parted by "|": files are joined
set(text "#ifndef ${GUARD}\n#define ${GUARD}\n\nnamespace ${NAMESPACE} {\n")
string(REPLACE "|" ";" TEXTS "${TEXTS}")
foreach(entry ${TEXTS})
  string(REGEX MATCH "^([^=]+)=(.*)$" matched "${entry}")
  set(name ${CMAKE_MATCH_1})
  string(REPLACE "+" ";" files "${CMAKE_MATCH_2}")
  string(APPEND text "\ninline constexpr char ${name}[] = R\"palvor(")
  foreach(file ${files})
    file(READ ${file} content)
    string(APPEND text "${content}")
  endforeach()
  string(APPEND text ")palvor\";\n")
endforeach()
string(APPEND text "\n}  // namespace ${NAMESPACE}\n\n#endif\n")
file(WRITE ${OUTPUT} "${text}")
