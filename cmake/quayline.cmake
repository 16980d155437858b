# SPDX-FileCopyrightText: 2026 The Quayline authors
# SPDX-License-Identifier: MIT

# Warnings, Qt's strict defines and the language: every target of ours links this.
add_library(quayline_options INTERFACE)
target_compile_features(quayline_options INTERFACE cxx_std_23)
target_compile_options(quayline_options INTERFACE -Wall -Wextra -Wshadow -Wnon-virtual-dtor
                                                  -Woverloaded-virtual -Werror
                                                  # A later Qt calls old what the earliest has.
                                                  -Wno-error=deprecated-declarations
                                                  # Structs give their members defaults.
                                                  -Wno-missing-field-initializers
                                                  -Wno-missing-designated-field-initializers)
target_compile_definitions(
  quayline_options
  INTERFACE QT_NO_CAST_FROM_ASCII
            QT_NO_CAST_TO_ASCII
            QT_NO_URL_CAST_FROM_STRING
            QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
            QT_NO_CONTEXTLESS_CONNECT
            QT_NO_KEYWORDS
            QT_DISABLE_DEPRECATED_BEFORE=0x060400
            QT_WARN_DEPRECATED_UP_TO=0x060400)
target_link_options(quayline_options INTERFACE -fuse-ld=lld-19)
if(QUAYLINE_SANITIZE)
  target_compile_options(quayline_options INTERFACE -fsanitize=address,undefined
                                                    -fno-omit-frame-pointer)
  target_link_options(quayline_options INTERFACE -fsanitize=address,undefined)
  target_compile_definitions(quayline_options INTERFACE QUAYLINE_SANITIZE)
endif()

# What makes errors in memory hard to exploit, for what users run: the code of tests is built without
# it. The sanitizers have checks of their own, and _FORTIFY_SOURCE needs an optimised build. A release
# has the debug information of a stack trace: functions and lines, no variables.
add_library(quayline_hardening INTERFACE)
target_link_options(quayline_hardening INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
if(NOT QUAYLINE_SANITIZE)
  target_compile_options(quayline_hardening INTERFACE -fstack-protector-strong
                                                      -fstack-clash-protection)
  target_link_options(quayline_hardening INTERFACE -pie)  # Qt asks for -fPIC in all that links it
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    target_compile_options(quayline_hardening INTERFACE -fcf-protection=full)
  elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64")
    target_compile_options(quayline_hardening INTERFACE -mbranch-protection=standard)
  endif()
endif()
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  target_compile_options(quayline_hardening INTERFACE -g1 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
  target_link_options(quayline_hardening INTERFACE -Wl,--build-id)
endif()

# A precompiled header of the Qt Core types, made once and shared by all targets.
function(quayline_precompile target)
  target_precompile_headers(${target} PRIVATE <QtCore/QtCore> <memory> <optional> <expected>
                            <functional> <vector>)
  target_compile_options(${target} PRIVATE -Xclang -fno-pch-timestamp)
endfunction()

# quayline_library(name SOURCES ... LINK ...): one folder of src/
function(quayline_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC quayline_options ${ARG_LINK} PRIVATE quayline_hardening)
  quayline_precompile(${name})
endfunction()

# quayline_program(name SOURCES ... LINK ...)
function(quayline_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE quayline_options ${ARG_LINK})
  quayline_precompile(${name})
endfunction()

# quayline_installed_program(name SOURCES ... LINK ...): a program for users. A release has its symbols
# in bin/.debug, where debuggers find them.
function(quayline_installed_program name)
  quayline_program(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE quayline_hardening)
  if(CMAKE_BUILD_TYPE STREQUAL "Release")
    set(symbols ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/.debug/${name}.debug)
    add_custom_command(
      TARGET ${name}
      POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/.debug
      COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${name}> ${symbols}
      COMMAND ${CMAKE_OBJCOPY} --strip-all --add-gnu-debuglink=${symbols} $<TARGET_FILE:${name}>
      VERBATIM)
  endif()
endfunction()

# quayline_test(name SOURCES ... LINK ...): one GoogleTest binary a folder.
function(quayline_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LINK" ${ARGN})
  quayline_program(${name} SOURCES ${ARG_SOURCES} LINK quayline_test_main ${ARG_LINK})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE QUAYLINE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT
                                          "${ARG_TIMEOUT}")
endfunction()
