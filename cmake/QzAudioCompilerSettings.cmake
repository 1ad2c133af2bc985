# Settings that every target of this project is compiled with.

add_compile_definitions(
    # An assertion stops the process in release builds too: the policy manager's documented behaviour relies on it.
    QT_FORCE_ASSERTS
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_CAST_TO_ASCII
    QT_NO_FOREACH
    QT_NO_KEYWORDS
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_URL_CAST_FROM_STRING
    QT_STRICT_ITERATORS
    QT_USE_QSTRINGBUILDER
)

add_compile_options(
    -Wall
    -Wextra
    -Wpedantic
    -Wcast-align
    -Wconversion
    -Wdate-time
    -Wfloat-conversion
    -Wnon-virtual-dtor
    -Woverloaded-virtual
    -Wshadow
    -Wsign-conversion
    -Wsuggest-override
    -Wundef
    -Wvla
    -Wzero-as-null-pointer-constant
    $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
    # GCC 12 takes QVector's own header for an overflow when it inlines an append.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>
    # Paths of the build machine would make two builds differ; log lines name files relative to the project.
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
    -ffile-prefix-map=${PROJECT_BINARY_DIR}/=
)
# Clang's sanitizers are in the program, where each library finds them when it is loaded.
if(NOT (QZAUDIO_SANITIZER AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang"))
    add_link_options(-Wl,--no-undefined)
endif()
add_link_options(-Wl,--as-needed)

set(warnings_as_errors ${QZAUDIO_WARNINGS_AS_ERRORS})
if(warnings_as_errors STREQUAL "AUTO")
    # Another compiler warns of other things, which must not stop somebody who only wants to build.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION MATCHES "^12\\.")
        set(warnings_as_errors ON)
    else()
        set(warnings_as_errors OFF)
        message(STATUS "Warnings are no errors: the project is checked with GCC 12, this is ${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}")
    endif()
endif()
if(warnings_as_errors)
    add_compile_options(-Werror)
endif()

if(QZAUDIO_UNSIGNED_CHAR)
    add_compile_options(-funsigned-char)
endif()

if(QZAUDIO_SANITIZER)
    add_compile_options(-fsanitize=${QZAUDIO_SANITIZER} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${QZAUDIO_SANITIZER})
endif()

if(QZAUDIO_COVERAGE)
    add_compile_options(--coverage -fprofile-update=atomic)
    add_link_options(--coverage)
endif()
