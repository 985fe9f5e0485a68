# Warnings are errors in every target of the project: link to Wendrel::Warnings.
add_library(WendrelWarnings INTERFACE)
add_library(Wendrel::Warnings ALIAS WendrelWarnings)
target_compile_options(WendrelWarnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
    -Woverloaded-virtual -Wimplicit-fallthrough -Wformat=2 -Werror)
