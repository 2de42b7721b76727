# Writes page_files.cpp: the page's files as byte arrays, with their paths and
# content types, so the transport serves them without touching the disk.
# Run with -DOUT=<file> -DFILES="<path>|<type>|<source>!..."
set(body "#include \"page_files.h\"\n\nnamespace kalvor::preview {\nnamespace {\n")
set(table "")
set(index 0)
string(REPLACE "!" ";" FILES "${FILES}")
foreach(entry IN LISTS FILES)
  string(REPLACE "|" ";" parts "${entry}")
  list(GET parts 0 url)
  list(GET parts 1 type)
  list(GET parts 2 source)
  file(READ "${source}" hex HEX)
  string(LENGTH "${hex}" digits)
  math(EXPR size "${digits} / 2")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
  string(APPEND body "const unsigned char file${index}[] = {${bytes}};\n")
  string(APPEND table "    {\"${url}\", \"${type}\", file${index}, ${size}},\n")
  math(EXPR index "${index} + 1")
endforeach()
string(APPEND body "}  // namespace\n\nconst PageFile kPageFiles[] = {\n${table}};\n"
  "const size_t kPageFileCount = sizeof kPageFiles / sizeof kPageFiles[0];\n\n}  // namespace kalvor::preview\n")
file(WRITE "${OUT}" "${body}")
