# What is installed, by component: library, development, simulator, qml, tools. The daemon installs its own files (service/).

include(CMakePackageConfigHelpers)

# qzaudio_compress(FILE TARGET): without the time of the build in it; again when FILE changes.
find_program(GZIP gzip)
function(qzaudio_compress file target)
    execute_process(COMMAND ${GZIP} -9 -n -c ${file} OUTPUT_FILE ${target} RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${file} cannot be compressed with gzip: ${result}")
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
endfunction()

function(qzaudio_install_manual program)
    qzaudio_compress(${PROJECT_SOURCE_DIR}/packaging/${program}.1 ${PROJECT_BINARY_DIR}/${program}.1.gz)
    install(FILES ${PROJECT_BINARY_DIR}/${program}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endfunction()

set(QZAUDIO_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QzAudio)

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
    install(TARGETS qzaudioqmlplugin
        LIBRARY DESTINATION ${QZAUDIO_QML_INSTALL_DIR}/QzAudio
        COMPONENT qml
    )
    install(TARGETS qzaudiosimulatorqmlplugin
        LIBRARY DESTINATION ${QZAUDIO_QML_INSTALL_DIR}/QzAudio/Simulator
        COMPONENT qml
    )
    install(FILES qml/qmldir DESTINATION ${QZAUDIO_QML_INSTALL_DIR}/QzAudio COMPONENT qml)
    install(FILES qml/qmldir.simulator
        DESTINATION ${QZAUDIO_QML_INSTALL_DIR}/QzAudio/Simulator
        RENAME qmldir
        COMPONENT qml
    )
    install(TARGETS qzaudio-bench RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
    install(DIRECTORY bench/scenarios
        DESTINATION ${CMAKE_INSTALL_DATADIR}/qzaudio
        COMPONENT tools
        FILES_MATCHING PATTERN "*.js"
    )
    qzaudio_install_manual(qzaudio-bench)
endif()
if(QZAUDIO_WITH_SERVICE)
    qzaudio_install_manual(qzaudio-focusd)
endif()
