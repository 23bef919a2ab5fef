# dornl3_warnings: what every target of the house compiles with. Both compilers, all of them errors.
add_library(dornl3_warnings INTERFACE)
target_compile_options(dornl3_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
