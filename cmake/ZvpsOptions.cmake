# Compiler settings of the project's own targets, as two interface libraries: what every target takes, and what code
# that computes results takes.

add_library(zvps_warnings INTERFACE)
target_compile_options(zvps_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Werror)

add_library(zvps_instrumentation INTERFACE)
if(ZVPS_SANITIZE)
  target_compile_options(zvps_instrumentation INTERFACE
    -fsanitize=${ZVPS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zvps_instrumentation INTERFACE -fsanitize=${ZVPS_SANITIZE})
endif()
if(ZVPS_COVERAGE)
  target_compile_options(zvps_instrumentation INTERFACE --coverage)
  target_link_options(zvps_instrumentation INTERFACE --coverage)
endif()

# No contraction: a result is a chain of IEEE operations, fused only where a kernel asks for it.
add_library(zvps_arithmetic INTERFACE)
target_compile_options(zvps_arithmetic INTERFACE -ffp-contract=off -fno-math-errno)
