# One way to declare a library, a program and a test, so that all get the same flags.

add_library(quillmate_flags INTERFACE)
target_compile_definitions(quillmate_flags INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_USE_QSTRINGBUILDER)
if(MSVC)
  target_compile_options(quillmate_flags INTERFACE /W4 /utf-8 $<$<BOOL:${QUILLMATE_WERROR}>:/WX>)
else()
  target_compile_options(quillmate_flags INTERFACE -Wall -Wextra
    # GCC 12 warns of overlapping copies inside its own std::string at -O3; there are none.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<BOOL:${QUILLMATE_WERROR}>:-Werror>)
endif()
if(QUILLMATE_SANITIZE)
  target_compile_options(quillmate_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(quillmate_flags INTERFACE -fsanitize=address,undefined)
  # Not a debug build, but one that looks for faults.
  target_compile_definitions(quillmate_flags INTERFACE QT_FORCE_ASSERTS)
endif()

if(QUILLMATE_FUZZ)
  target_compile_options(quillmate_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# quillmate_platform_sources(TARGET names...): for each name the source of this platform, nameWindows.cpp
# or nameUnix.cpp.
function(quillmate_platform_sources target)
  set(system Unix)
  if(WIN32)
    set(system Windows)
  endif()
  foreach(name ${ARGN})
    target_sources(${target} PRIVATE ${name}${system}.cpp)
  endforeach()
endfunction()

# quillmate_library(NAME [MOC] DEPENDS targets... SOURCES files... [PLATFORM names...]); MOC for one with
# Q_OBJECT classes, PLATFORM for what each platform does in its own way.
# The include folder is the library's own, so that a folder can include only what it links: a header
# of a folder above it is not found, and a logic target does not find Qt Widgets.
function(quillmate_library name)
  cmake_parse_arguments(arg "MOC" "" "DEPENDS;SOURCES;PLATFORM" ${ARGN})
  add_library(${name} STATIC ${arg_SOURCES})
  quillmate_platform_sources(${name} ${arg_PLATFORM})
  set_target_properties(${name} PROPERTIES AUTOMOC ${arg_MOC})
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${arg_DEPENDS} PRIVATE quillmate_flags)
endfunction()

# quillmate_test(NAME DEPENDS targets... [SOURCES files...] [MAIN file]): a Qt Test program from NAME.cpp
# or, when the same tests are to run on other sources, from MAIN.
function(quillmate_test name)
  cmake_parse_arguments(arg "" "MAIN" "DEPENDS;SOURCES" ${ARGN})
  if(NOT arg_MAIN)
    set(arg_MAIN ${name}.cpp)
  endif()
  add_executable(${name} ${arg_MAIN} ${arg_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests/doubles)
  target_link_libraries(${name} PRIVATE ${arg_DEPENDS} Qt6::Test quillmate_flags)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_LOGGING_RULES=qt.qpa.*=false"
    TIMEOUT 300)
endfunction()

# quillmate_fuzz(NAME DEPENDS targets...): a libFuzzer program from NAME.cpp, in the fuzz preset only.
function(quillmate_fuzz name)
  if(NOT QUILLMATE_FUZZ)
    return()
  endif()
  cmake_parse_arguments(arg "" "" "DEPENDS" ${ARGN})
  add_executable(${name} ${name}.cpp)
  target_link_libraries(${name} PRIVATE ${arg_DEPENDS} quillmate_flags)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
endfunction()
