# Writes the function catalogue into a C++ source as one string.
file(READ ${IN} CONTENT)
file(WRITE ${OUT} "// Generated from data/functions.tsv.\nnamespace TabrinoCli {\nextern const char* const FunctionCatalogueText = R\"tsv(${CONTENT})tsv\";\n}\n")
