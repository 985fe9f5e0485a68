# Warnings are errors in every target of the project: link to Wendrel::Warnings.
add_library(WendrelWarnings INTERFACE)
add_library(Wendrel::Warnings ALIAS WendrelWarnings)
target_compile_options(WendrelWarnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
    -Woverloaded-virtual -Wimplicit-fallthrough -Wformat=2 -Werror)
# GCC 12 sees overlapping copies in "text" + std::string when it optimises (GCC bug 105651, mended in 13).
target_compile_options(WendrelWarnings INTERFACE
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)
