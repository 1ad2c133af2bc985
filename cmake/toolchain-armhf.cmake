# Cross-compiles for the head unit's 32-bit Arm processor; tools/armhf-sysroot fetches what it links with.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)

set(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/armhf-sysroot CACHE PATH "Arm libraries and headers")
get_filename_component(CMAKE_SYSROOT ${CMAKE_SYSROOT} ABSOLUTE)
if(NOT IS_DIRECTORY ${CMAKE_SYSROOT}/usr/include)
    message(FATAL_ERROR "There are no Arm libraries in ${CMAKE_SYSROOT}; tools/armhf-sysroot fetches them.")
endif()

set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

# Nothing here was compiled by a GCC older than 7, which its notes about parameters are for.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)

# Programs to run while building are this machine's, all else is Arm's.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# CTest runs the Arm programs in the emulator. Its whole path: a bus that starts a program does not search for it.
find_program(QZAUDIO_EMULATOR qemu-arm DOC "Runs Arm programs")
if(QZAUDIO_EMULATOR)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${QZAUDIO_EMULATOR};-L;${CMAKE_SYSROOT})
endif()
