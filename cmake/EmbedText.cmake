# cmake -DIN=<text file> -DOUT=<header> -DNAME=<identifier> -P EmbedText.cmake
# Writes a header holding the file's text as one string constant, so a script kept in a file of
# its own (and checked as one) is built into the program.
file(READ "${IN}" text)
string(FIND "${text}" ")EMBED\"" clash)
if(NOT clash EQUAL -1)
  message(FATAL_ERROR "${IN} holds the raw string's closing delimiter")
endif()
file(WRITE "${OUT}.new" "#pragma once\n// Generated from ${IN}; edit that file.\ninline constexpr char ${NAME}[] = R\"EMBED(${text})EMBED\";\n")
file(COPY_FILE "${OUT}.new" "${OUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUT}.new")
