# What is installed with the library itself. Modules, tools, daemon and bus description install themselves in their folders.

include(CMakePackageConfigHelpers)

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
target_link_options(qzaudio INTERFACE $<INSTALL_INTERFACE:-Wl,-rpath-link,$<INSTALL_PREFIX>/${CMAKE_INSTALL_LIBDIR}>)

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
configure_file(cmake/qzaudio.pc.in qzaudio.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qzaudio.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
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
