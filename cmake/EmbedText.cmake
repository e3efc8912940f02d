# cmake -D OUTPUT=FILE.cpp -D HEADER=folder/Name.h -D NAMESPACE=name -P EmbedText.cmake
#       kName=FILE...
# Writes a source file that defines the texts of files as constants.
set(source "#include \"${HEADER}\"\n\nnamespace ${NAMESPACE} {\n")
math(EXPR last "${CMAKE_ARGC} - 1")
foreach(i RANGE ${last})
  if(CMAKE_ARGV${i} MATCHES "^(k[A-Za-z]+)=(.+)$")
    set(name ${CMAKE_MATCH_1})
    file(READ ${CMAKE_MATCH_2} text)
    string(APPEND source "\nconst char ${name}[] = R\"embedded(${text})embedded\";\n")
  endif()
endforeach()
string(APPEND source "\n}  // namespace ${NAMESPACE}\n")
file(WRITE ${OUTPUT} "${source}")
