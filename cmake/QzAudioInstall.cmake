# What is installed, by component: library, development, simulator, qml, tools, desk, documentation. The daemon installs its own files
# (service/), and the doctor its program (doctor/).

include(CMakePackageConfigHelpers)

function(qzaudio_install_manual program component)
    qzaudio_install_filled(${PROJECT_SOURCE_DIR}/packaging/${program}.1 ${CMAKE_INSTALL_MANDIR}/man1 ${component} COMPRESSED)
endfunction()

# qzaudio_install_completion(SOURCE PROGRAM COMPONENT): packaging/qzaudio-SOURCE.bash-completion, where the package bash-completion looks
# for PROGRAM's.
function(qzaudio_install_completion source program component)
    install(FILES ${PROJECT_SOURCE_DIR}/packaging/qzaudio-${source}.bash-completion
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME ${program}
        COMPONENT ${component}
    )
endfunction()

# qzaudio_find_siblings(TARGET FOLDER): TARGET, which is installed to FOLDER, finds the libraries that are installed with it.
get_filename_component(library_folder ${CMAKE_INSTALL_LIBDIR} ABSOLUTE BASE_DIR /prefix)
function(qzaudio_find_siblings target folder)
    if(NOT QZAUDIO_RELATIVE_RUN_PATH)
        return()
    endif()
    get_filename_component(folder ${folder} ABSOLUTE BASE_DIR /prefix)
    file(RELATIVE_PATH way ${folder} ${library_folder})
    string(REGEX REPLACE "/$" "" way "/${way}")
    set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN${way})
endfunction()

set(QZAUDIO_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QzAudio)

# A client's run path does not count for what the library needs itself.
qzaudio_find_siblings(qzaudio ${CMAKE_INSTALL_LIBDIR})
install(TARGETS qzaudio
    EXPORT QzAudioTargets
    LIBRARY
        DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT library
        NAMELINK_COMPONENT development
)
install(DIRECTORY include/qzaudio
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    COMPONENT development
    FILES_MATCHING PATTERN "*.h"
)

# A client's linker must find the platform's library, which the client itself does not name.
if(QZAUDIO_ON_SIMULATOR)
    set(QZAUDIO_PLATFORM_LIBRARY_DIR ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
else()
    set(QZAUDIO_PLATFORM_LIBRARY_DIR ${QZAUDIO_PLATFORM_SDK}/lib)
endif()
target_link_options(qzaudio
    INTERFACE
        $<BUILD_INTERFACE:-Wl,-rpath-link,${QZAUDIO_PLATFORM_LIBRARY_DIR}>
        $<INSTALL_INTERFACE:-Wl,-rpath-link,$<INSTALL_PREFIX>/${CMAKE_INSTALL_LIBDIR}>
)

install(EXPORT QzAudioTargets
    NAMESPACE QzAudio::
    DESTINATION ${QZAUDIO_CMAKE_DIR}
    COMPONENT development
)
configure_package_config_file(cmake/QzAudioConfig.cmake.in QzAudioConfig.cmake INSTALL_DESTINATION ${QZAUDIO_CMAKE_DIR})
write_basic_package_version_file(QzAudioConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QzAudioConfig.cmake ${PROJECT_BINARY_DIR}/QzAudioConfigVersion.cmake
    DESTINATION ${QZAUDIO_CMAKE_DIR}
    COMPONENT development
)
file(RELATIVE_PATH QZAUDIO_PKGCONFIG_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/qzaudio.pc.in qzaudio.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qzaudio.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development
)

install(FILES dbus/tavi.AudioService.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/interfaces
    COMPONENT development
)

if(QZAUDIO_ON_SIMULATOR)
    install(TARGETS qzaudio_simulator
        LIBRARY
            DESTINATION ${CMAKE_INSTALL_LIBDIR}
            COMPONENT simulator
            NAMELINK_SKIP
    )
endif()

if(QZAUDIO_WITH_QML)
    set(QZAUDIO_QML_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/qt5/qml CACHE STRING "Where QML modules are installed, below the prefix")
    qzaudio_find_siblings(qzaudioqmlplugin ${QZAUDIO_QML_INSTALL_DIR}/QzAudio)
    qzaudio_find_siblings(qzaudiosimulatorqmlplugin ${QZAUDIO_QML_INSTALL_DIR}/QzAudio/Simulator)
    install(TARGETS qzaudioqmlplugin
        LIBRARY DESTINATION ${QZAUDIO_QML_INSTALL_DIR}/QzAudio
        COMPONENT qml
    )
    install(TARGETS qzaudiosimulatorqmlplugin
        LIBRARY DESTINATION ${QZAUDIO_QML_INSTALL_DIR}/QzAudio/Simulator
        COMPONENT qml
    )
    # As they lie in the build folder, under the names that QML looks for.
    install(FILES ${PROJECT_BINARY_DIR}/qml/QzAudio/qmldir ${PROJECT_BINARY_DIR}/qml/QzAudio/plugins.qmltypes
        DESTINATION ${QZAUDIO_QML_INSTALL_DIR}/QzAudio
        COMPONENT qml
    )
    install(FILES ${PROJECT_BINARY_DIR}/qml/QzAudio/Simulator/qmldir ${PROJECT_BINARY_DIR}/qml/QzAudio/Simulator/plugins.qmltypes
        DESTINATION ${QZAUDIO_QML_INSTALL_DIR}/QzAudio/Simulator
        COMPONENT qml
    )
    qzaudio_find_siblings(qzaudio-bench ${CMAKE_INSTALL_BINDIR})
    install(TARGETS qzaudio-bench RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
    install(DIRECTORY bench/scenarios
        DESTINATION ${CMAKE_INSTALL_DATADIR}/qzaudio
        COMPONENT tools
        FILES_MATCHING PATTERN "*.js"
    )
    install(PROGRAMS tools/with-flash DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME qzaudio-with-flash COMPONENT tools)
    qzaudio_install_completion(bench qzaudio-bench tools)
    qzaudio_install_completion(options qzaudio-with-flash tools)
    qzaudio_install_manual(qzaudio-bench tools)
    qzaudio_install_manual(qzaudio-with-flash tools)
endif()
if(TARGET qzaudio-desk)
    # The window looks for the car beside itself.
    foreach(program qzaudio-desk qzaudio-desk-car)
        qzaudio_find_siblings(${program} ${CMAKE_INSTALL_BINDIR})
        install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT desk)
    endforeach()
    install(FILES packaging/qzaudio-desk.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT desk)
    install(FILES packaging/qzaudio-desk.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT desk)
    install(FILES packaging/qzaudio-desk.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT desk)
    qzaudio_install_completion(desk qzaudio-desk desk)
    qzaudio_install_manual(qzaudio-desk desk)
endif()
if(QZAUDIO_WITH_SERVICE)
    qzaudio_find_siblings(qzaudio-focusd ${CMAKE_INSTALL_BINDIR})
    qzaudio_install_completion(options qzaudio-focusd tools)
    qzaudio_install_manual(qzaudio-focusd tools)
endif()
qzaudio_find_siblings(qzaudio-doctor ${CMAKE_INSTALL_BINDIR})
qzaudio_install_completion(options qzaudio-doctor tools)
qzaudio_install_manual(qzaudio-doctor tools)

# The documents in the shape of the sources, so that their links lead to the same ones. Only the scenarios stand elsewhere, if at all.
file(RELATIVE_PATH scenarios ${CMAKE_INSTALL_FULL_DOCDIR} ${CMAKE_INSTALL_FULL_DATADIR}/qzaudio/scenarios)
file(READ README.md readme)
if(QZAUDIO_WITH_QML)
    string(REPLACE "](bench/scenarios)" "](${scenarios})" readme "${readme}")
else()
    string(REPLACE "[bench/scenarios](bench/scenarios)" "`bench/scenarios` of the sources" readme "${readme}")
endif()
file(WRITE ${PROJECT_BINARY_DIR}/documents/README.md "${readme}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS README.md)
install(FILES ${PROJECT_BINARY_DIR}/documents/README.md CHANGELOG.md CONTRIBUTING.md
    DESTINATION ${CMAKE_INSTALL_DOCDIR}
    COMPONENT documentation
)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation
    FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN "*.png" PATTERN "*.js"
)
install(FILES tests/consumer/main.cpp DESTINATION ${CMAKE_INSTALL_DOCDIR}/tests/consumer COMPONENT documentation)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
if(QZAUDIO_WITH_REFERENCE)
    # Made anew each time: it takes a second, and is of all headers and documents.
    set(reference ${PROJECT_BINARY_DIR}/reference)
    add_custom_target(reference ALL
        COMMAND ${PROJECT_SOURCE_DIR}/tools/reference --output ${reference} -- ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:qzaudio-bench>
        VERBATIM
    )
    install(DIRECTORY ${reference}/html DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
    install(FILES ${reference}/qzaudio.qch DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
endif()
