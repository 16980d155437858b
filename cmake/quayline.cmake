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

# What tests take to compile is most of what everything takes, and nothing in them has to be fast.
add_library(quayline_test_code INTERFACE)
target_compile_options(quayline_test_code INTERFACE $<$<CONFIG:Release>:-O0>)

# A precompiled header with the types of Qt Core. It can only be used with the flags that it was made
# with, so there are three: for what users run, for other programs, and for tests.
function(quayline_make_precompiled kind)
  set(name quayline_precompiled_${kind})
  add_library(${name} OBJECT ${PROJECT_SOURCE_DIR}/cmake/precompiled.cpp)
  set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
  target_link_libraries(${name} PRIVATE quayline_options Qt6::Core ${ARGN})
  target_precompile_headers(${name} PRIVATE <QtCore/QtCore> <memory> <optional> <expected>
                            <functional> <vector>)
  target_compile_options(${name} PRIVATE -Xclang -fno-pch-timestamp)
endfunction()

quayline_make_precompiled(hardened quayline_hardening)
quayline_make_precompiled(plain)
quayline_make_precompiled(test quayline_test_code)

# Links what code of this kind is compiled with.
function(quayline_precompile target kind)
  if(kind STREQUAL "hardened")
    target_link_libraries(${target} PRIVATE quayline_hardening)
  elseif(kind STREQUAL "test")
    target_link_libraries(${target} PRIVATE quayline_test_code)
  endif()
  target_precompile_headers(${target} REUSE_FROM quayline_precompiled_${kind})
  target_compile_options(${target} PRIVATE -Xclang -fno-pch-timestamp)
endfunction()

# quayline_library(name SOURCES ... LINK ...): one folder of src/
function(quayline_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC quayline_options ${ARG_LINK})
  quayline_precompile(${name} hardened)
endfunction()

# quayline_executable(kind name SOURCES ... LINK ...): `kind` is that of its precompiled header.
function(quayline_executable kind name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE quayline_options ${ARG_LINK})
  quayline_precompile(${name} ${kind})
endfunction()

# quayline_program(name SOURCES ... LINK ...)
function(quayline_program name)
  quayline_executable(plain ${name} ${ARGN})
endfunction()

# quayline_installed_program(name SOURCES ... LINK ...): a program for users. A release has its symbols
# in bin/.debug, where debuggers find them.
function(quayline_installed_program name)
  quayline_executable(hardened ${name} ${ARGN})
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
  quayline_executable(test ${name} SOURCES ${ARG_SOURCES} LINK quayline_test_main ${ARG_LINK})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE QUAYLINE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT
                                          "${ARG_TIMEOUT}")
endfunction()
