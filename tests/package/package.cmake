# One step of the test of the installed package; see CMakeLists.txt.
cmake_minimum_required(VERSION 3.25)
set(PREFIX ${WORK}/moved)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(step_install)
  file(REMOVE_RECURSE ${WORK})
  run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/installed)
  file(RENAME ${WORK}/installed ${PREFIX})

  # What is read by others names neither this source tree nor what only the build needs.
  file(GLOB_RECURSE texts ${PREFIX}/*.cmake ${PREFIX}/*.pc ${PREFIX}/*.h)
  list(LENGTH texts count)
  if(count LESS 10)
    message(FATAL_ERROR "too little was installed: ${texts}")
  endif()
  cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH tests)
  cmake_path(GET tests PARENT_PATH source)
  foreach(text IN LISTS texts)
    file(READ ${text} content)
    foreach(forbidden ${source}/ ${BUILD}/ ${WORK}/ hwy zvps_warnings zvps_instrumentation zvps_arithmetic)
      string(FIND "${content}" "${forbidden}" position)
      if(NOT position EQUAL -1)
        message(FATAL_ERROR "${text} mentions ${forbidden}")
      endif()
    endforeach()
  endforeach()
endfunction()

function(use_cmake language compiler)
  run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${CMAKE_CURRENT_LIST_DIR}/foreign -B ${WORK}/${language}
    -DCMAKE_PREFIX_PATH=${PREFIX} -DLANGUAGE=${language} -DVERSION=${VERSION} -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_${language}_COMPILER=${compiler})
  run(${CMAKE_COMMAND} --build ${WORK}/${language})
  run(${WORK}/${language}/shared)
  run(${WORK}/${language}/static)
endfunction()

function(step_cmake_c)
  use_cmake(C ${C_COMPILER})
endfunction()

function(step_cmake_cxx)
  use_cmake(CXX ${CXX_COMPILER})
endfunction()

function(pkg_config variable)
  execute_process(COMMAND pkg-config ${ARGN} OUTPUT_VARIABLE output OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(output UNIX_COMMAND "${output}")
  set(${variable} ${output} PARENT_SCOPE)
endfunction()

function(step_pkg_config)
  set(ENV{PKG_CONFIG_PATH} ${PREFIX}/${LIBDIR}/pkgconfig)
  set(compile ${C_COMPILER} -std=c99 -Wall -Wextra -Wpedantic -Werror ${CMAKE_CURRENT_LIST_DIR}/foreign/main.c)
  foreach(package zvps zvpcore)
    pkg_config(version --modversion ${package})
    if(NOT version STREQUAL VERSION)
      message(FATAL_ERROR "${package}.pc gives version ${version}")
    endif()
  endforeach()

  # The program calls both libraries; static linking must find the second one by itself.
  pkg_config(flags --cflags --libs zvps zvpcore)
  run(${compile} -o ${WORK}/pc_shared ${flags})
  run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${PREFIX}/${LIBDIR} ${WORK}/pc_shared)
  pkg_config(flags --static --cflags --libs zvps)
  run(${compile} -static -o ${WORK}/pc_static ${flags})
  run(${WORK}/pc_static)
endfunction()

cmake_language(CALL step_${STEP})
