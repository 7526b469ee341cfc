# zvps_public_headers(VARIABLE FILE...): the headers' absolute paths.
function(zvps_public_headers variable)
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  set(${variable} ${ARGN} PARENT_SCOPE)
endfunction()

# zvps_add_kernels(NAME FILE...): one object library for each level, each into its own namespace. Sets NAME in the
# caller's scope to the list of objects.
function(zvps_add_kernels name)
  set(objects)
  foreach(level v2 v3 v4)
    set(target ${name}_${level})
    add_library(${target} OBJECT ${ARGN})
    target_include_directories(${target} PRIVATE src include)
    target_compile_definitions(${target} PRIVATE ZVPS_LEVEL=${level})
    # A short loop that straddles lines of decoded instructions loses a tenth.
    target_compile_options(${target} PRIVATE -march=x86-64-${level} -falign-loops=64 -fno-exceptions)
    target_link_libraries(${target} PRIVATE zvps_warnings zvps_instrumentation zvps_arithmetic)
    set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    list(APPEND objects $<TARGET_OBJECTS:${target}>)
  endforeach()
  set(${name} ${objects} PARENT_SCOPE)
endfunction()

# zvps_add_library(NAME HEADERS ... SOURCES ... [OBJECTS ...] [LINK ...]): the shared library NAME, which exports exactly
# the functions its headers declare, and its static twin NAME_static. The sources are compiled once for both.
function(zvps_add_library name)
  cmake_parse_arguments(arg "" "" "HEADERS;SOURCES;OBJECTS;LINK" ${ARGN})

  add_library(${name}_objects OBJECT ${arg_SOURCES})
  target_include_directories(${name}_objects PRIVATE src include)
  # Nothing throws, and the shared object needs no C++ run time.
  target_compile_options(${name}_objects PRIVATE -march=x86-64-v2 -fno-exceptions)
  target_link_libraries(${name}_objects PRIVATE
    ${arg_LINK} zvps_warnings zvps_instrumentation zvps_arithmetic)
  set_target_properties(${name}_objects PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)

  # `static inline` functions are the header's own and not exported.
  set(exported)
  foreach(header IN LISTS arg_HEADERS)
    file(STRINGS ${header} declarations REGEX "^[A-Za-z].*[ *](zvps?|own)[A-Za-z0-9_]+\\(")
    foreach(declaration IN LISTS declarations)
      if(NOT declaration MATCHES "^static " AND declaration MATCHES "[ *]((zvps?|own)[A-Za-z0-9_]+)\\(")
        string(APPEND exported "    ${CMAKE_MATCH_1};\n")
      endif()
    endforeach()
  endforeach()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${arg_HEADERS})
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${name}.map)
  file(CONFIGURE OUTPUT ${script} CONTENT "{\n  global:\n@exported@  local: *;\n};\n" @ONLY)

  add_library(${name} SHARED $<TARGET_OBJECTS:${name}_objects> ${arg_OBJECTS})
  target_link_options(${name} PRIVATE -Wl,--version-script=${script} -Wl,-z,defs -Wl,-z,relro,-z,now)
  set_property(TARGET ${name} PROPERTY LINK_DEPENDS ${script})
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  add_library(${name}_static STATIC $<TARGET_OBJECTS:${name}_objects> ${arg_OBJECTS})
  set_target_properties(${name}_static PROPERTIES OUTPUT_NAME ${name})

  foreach(target ${name} ${name}_static)
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
    target_include_directories(${target} PUBLIC
      $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
      $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    add_library(zvps::${target} ALIAS ${target})
  endforeach()
  foreach(link IN LISTS arg_LINK)
    target_link_libraries(${name} PRIVATE ${link})
    if(TARGET ${link}_static)
      target_link_libraries(${name}_static PRIVATE ${link}_static)
    elseif(link MATCHES "^OpenMP::")
      # A program in C alone has no OpenMP::OpenMP_CXX; either gives the same runtime library.
      target_link_libraries(${name}_static PRIVATE $<BUILD_INTERFACE:${link}>
        $<INSTALL_INTERFACE:$<IF:$<TARGET_EXISTS:${link}>,${link},OpenMP::OpenMP_C>>)
    else()
      target_link_libraries(${name}_static PRIVATE ${link})
    endif()
  endforeach()
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:zvps_instrumentation>)
  target_link_libraries(${name}_static PRIVATE $<BUILD_INTERFACE:zvps_instrumentation>)
  # Beside each other wherever they are installed.
  set_target_properties(${name} PROPERTIES INSTALL_RPATH $ORIGIN)
endfunction()
