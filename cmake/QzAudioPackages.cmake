# Debian packages, one for each component, made by packaging/build.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qzaudio)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "qzaudio developers <qzaudio@head-unit.invalid>") # there is no such mailbox
# Each package has a summary of its own, which this one would be put in front of.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
if(CMAKE_CROSSCOMPILING)
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
endif()

set(CPACK_COMPONENTS_ALL library development documentation tools)
if(QZAUDIO_ON_SIMULATOR)
    list(APPEND CPACK_COMPONENTS_ALL simulator)
endif()
if(QZAUDIO_WITH_QML)
    list(APPEND CPACK_COMPONENTS_ALL qml)
endif()
if(TARGET qzaudio-desk)
    list(APPEND CPACK_COMPONENTS_ALL desk)
endif()

# The dependencies are written out: dpkg-shlibdeps cannot read the libraries of another processor.
set(same "(= ${PROJECT_VERSION})")
set(runtime "libc6 (>= 2.34), libgcc-s1 (>= 3.5), libstdc++6 (>= 12)")
set(core "libqt5core5a (>= 5.15.1)")
set(bus "libqt5dbus5 (>= 5.14.1)")
set(qml)
if(QZAUDIO_WITH_QML)
    set(qml ", libqt5qml5 (>= 5.15)")
endif()
set(library "libqzaudio${PROJECT_VERSION_MAJOR} ${same}")
set(tools)
if(QZAUDIO_WITH_QML)
    set(tools ", bubblewrap (>= 0.8)") # qzaudio-with-flash
endif()
set(simulator)
if(QZAUDIO_ON_SIMULATOR)
    set(simulator ", libqzaudio-simulator${PROJECT_VERSION_MAJOR} ${same}")
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
        EXCLUDE_FROM_ALL # in packages only
    )
endfunction()

# qzaudio_shared_library(COMPONENT SONAME_WITHOUT_VERSION): what the dynamic linker and other packages must be told of a library.
# CPack could do it, but by scripts that Debian has replaced by a trigger, and with a dependency on this very version.
function(qzaudio_shared_library component name)
    string(TOUPPER ${component} upper)
    set(control ${PROJECT_BINARY_DIR}/control/${component})
    file(WRITE ${control}/triggers "activate-noawait ldconfig\n")
    file(WRITE ${control}/shlibs
        "${name} ${PROJECT_VERSION_MAJOR} ${CPACK_DEBIAN_${upper}_PACKAGE_NAME} (>= ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})\n"
    )
    set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA "${control}/triggers;${control}/shlibs" PARENT_SCOPE)
endfunction()

qzaudio_package(library libqzaudio${PROJECT_VERSION_MAJOR} libs
    "audio library of a car's head unit"
    "Volumes, ducking, mute, routing, equalizer, microphone settings and audio
focus for the applications of a head unit."
    "${runtime}, ${core}, ${bus}${simulator}"
)
qzaudio_shared_library(library libqzaudio)
qzaudio_package(development libqzaudio-dev libdevel
    "audio library of a car's head unit - development files"
    "Headers, CMake package, pkg-config description and bus interface of
libqzaudio.so.${PROJECT_VERSION_MAJOR}."
    "${library}, qtbase5-dev (>= 5.15)"
)
# qzaudio_lintian_overrides(COMPONENT NAME): what lintian complains of and is meant
function(qzaudio_lintian_overrides component name)
    install(FILES packaging/${name}.lintian-overrides
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME ${name}
        COMPONENT ${component}
        EXCLUDE_FROM_ALL
    )
endfunction()
qzaudio_lintian_overrides(development libqzaudio-dev)
qzaudio_package(simulator libqzaudio-simulator${PROJECT_VERSION_MAJOR} libs
    "audio library of a car's head unit - simulated platform"
    "Stands in for the platform's audio-setting library on a desk. Nothing
reaches any hardware."
    "${runtime}, ${core}"
)
if(QZAUDIO_ON_SIMULATOR)
    qzaudio_shared_library(simulator libqzaudio_simulator)
endif()
qzaudio_package(qml qml-module-qzaudio libs
    "audio library of a car's head unit - QML modules"
    "The modules QzAudio and QzAudio.Simulator."
    "${runtime}, ${core}, ${bus}${qml}, ${library}${simulator}"
)
qzaudio_package(tools qzaudio-tools sound
    "audio library of a car's head unit - desk bench, focus daemon and doctor"
    "qzaudio-bench plays scenarios on the simulated platform, qzaudio-with-flash
gives a program a unit's flash, qzaudio-focusd serves audio focus on the bus,
qzaudio-doctor looks whether a unit is set up rightly."
    "${runtime}, ${core}, ${bus}${qml}${tools}, ${library}${simulator}"
)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS "libqzaudio-doc, bash-completion, ffmpeg, espeak-ng, default-dbus-system-bus | dbus-system-bus") # the daemon serves there, too
# The bench brings the scenarios, and what a car gets its flash by.
set(window "libqt5gui5 (>= 5.15), libqt5widgets5 (>= 5.15), libqt5quick5 (>= 5.15), libqt5quickcontrols2-5 (>= 5.15), libqt5multimedia5 (>= 5.15)")
foreach(module qtquick2 qtquick-window2 qtquick-controls2 qtquick-templates2 qtquick-layouts qtquick-shapes qt-labs-platform)
    string(APPEND window ", qml-module-${module}")
endforeach()
qzaudio_package(desk qzaudio-desk sound
    "audio library of a car's head unit - simulated car in a window"
    "Drive, loudspeakers, equalizer, audio focus, platform, settings and
microphone of a simulated car, with a clock that goes back, and recordings that
qzaudio-bench plays."
    "${runtime}, ${core}, ${bus}${qml}, ${window}, qzaudio-tools ${same}, ${library}${simulator}"
)
if(TARGET qzaudio-desk)
    qzaudio_lintian_overrides(desk qzaudio-desk)
endif()
set(CPACK_DEBIAN_DESK_PACKAGE_RECOMMENDS "libqt5multimedia5-plugins, ffmpeg, espeak-ng") # listening
set(CPACK_DEBIAN_DESK_PACKAGE_SUGGESTS "libqzaudio-doc")
qzaudio_package(documentation libqzaudio-doc doc
    "audio library of a car's head unit - documents"
    "How to use, integrate and understand the library, in Markdown; begin with
${CMAKE_INSTALL_FULL_DOCDIR}/README.md. The reference, in HTML and for Qt's
help; begin with ${CMAKE_INSTALL_FULL_DOCDIR}/html/index.html."
    ""
)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SUGGESTS qzaudio-tools) # the scenarios, which the documents link to
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS libqzaudio-doc)
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "default-dbus-session-bus | dbus-session-bus")

# A release's changelog, in the packaging's own form.
qzaudio_compress(${PROJECT_SOURCE_DIR}/packaging/changelog ${PROJECT_BINARY_DIR}/changelog.gz)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS packaging/changelog)

include(CPack)
