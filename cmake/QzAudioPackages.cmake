# Debian packages, one for each component, made by packaging/build.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qzaudio)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "qzaudio developers <qzaudio@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
if(CMAKE_CROSSCOMPILING)
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
endif()

set(CPACK_COMPONENTS_ALL library development)
if(QZAUDIO_ON_SIMULATOR)
    list(APPEND CPACK_COMPONENTS_ALL simulator)
endif()
if(QZAUDIO_WITH_QML)
    list(APPEND CPACK_COMPONENTS_ALL qml tools)
endif()

# The dependencies are written out: dpkg-shlibdeps cannot read the libraries of another processor.
set(runtime "libc6 (>= 2.34), libgcc-s1 (>= 3.5), libstdc++6 (>= 12)")
set(qt "libqt5core5a (>= 5.15.1), libqt5dbus5 (>= 5.14)")
set(same "(= ${PROJECT_VERSION})")
set(simulated)
if(QZAUDIO_ON_SIMULATOR)
    set(simulated ", libqzaudio-simulator1 ${same}")
endif()

# qzaudio_package(COMPONENT NAME SECTION SUMMARY DESCRIPTION DEPENDS)
function(qzaudio_package component name section summary description depends)
    if(NOT component IN_LIST CPACK_COMPONENTS_ALL)
        return()
    endif()
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${description}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    install(FILES packaging/copyright ${PROJECT_BINARY_DIR}/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name}
        COMPONENT ${component}
    )
endfunction()

qzaudio_package(library libqzaudio1 libs
    "audio library of a car's head unit"
    "Volumes, ducking, mute, routing, equalizer, microphone settings and audio focus for the applications of a head unit."
    "${runtime}, ${qt}${simulated}"
)
qzaudio_package(development libqzaudio-dev libdevel
    "audio library of a car's head unit - development files"
    "Headers, CMake package and pkg-config description of libqzaudio.so.1."
    "libqzaudio1 ${same}, qtbase5-dev"
)
qzaudio_package(simulator libqzaudio-simulator1 libs
    "audio library of a car's head unit - simulated platform"
    "Stands in for the platform's audio-setting library on a desk. Nothing reaches any hardware."
    "${runtime}, libqt5core5a (>= 5.15.1)"
)
qzaudio_package(qml qml-module-qzaudio libs
    "audio library of a car's head unit - QML modules"
    "The modules QzAudio and QzAudio.Simulator."
    "${runtime}, ${qt}, libqt5qml5 (>= 5.15), libqzaudio1 ${same}${simulated}"
)
qzaudio_package(tools qzaudio-tools sound
    "audio library of a car's head unit - desk bench and focus daemon"
    "qzaudio-bench plays scenarios on the simulated platform; qzaudio-focusd serves audio focus on the bus."
    "${runtime}, ${qt}, libqt5qml5 (>= 5.15), libqzaudio1 ${same}${simulated}"
)
# A release's changelog, in the packaging's own form, without the time of the build in it.
execute_process(
    COMMAND ${GZIP} -9 -n -c ${PROJECT_SOURCE_DIR}/packaging/changelog
    OUTPUT_FILE ${PROJECT_BINARY_DIR}/changelog.gz
    COMMAND_ERROR_IS_FATAL ANY
)

include(CPack)
