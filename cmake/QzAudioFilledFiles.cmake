# Files that name the place where they and others are installed. They are filled in by the installation (QzAudioFill.cmake): only then the
# prefix is known, which may be another one than was configured.

find_program(GZIP gzip)
include(QzAudioCompress)

# The code that all of them begin with.
set(QZAUDIO_FILL "
    set(GZIP \"${GZIP}\")
    set(QZAUDIO_BINDIR \"${CMAKE_INSTALL_BINDIR}\")
    set(QZAUDIO_DATADIR \"${CMAKE_INSTALL_DATADIR}\")
    set(QZAUDIO_DOCDIR \"${CMAKE_INSTALL_DOCDIR}\")
    include(\"${CMAKE_CURRENT_LIST_DIR}/QzAudioFill.cmake\")"
)
# Nothing is installed where the daemon cannot be started.
if(QZAUDIO_WITH_SERVICE)
    install(CODE "${QZAUDIO_FILL}\n    qzaudio_check_daemon()" COMPONENT tools)
endif()

# qzaudio_install_filled(TEMPLATE DESTINATION COMPONENT [COMPRESSED]): TEMPLATE's name may end in ".in".
function(qzaudio_install_filled template destination component)
    string(SHA1 folder ${destination}) # there are files of the same name
    install(CODE "${QZAUDIO_FILL}
    qzaudio_install_filled(\"${template}\" \"${PROJECT_BINARY_DIR}/filled/${folder}\" \"${destination}\" ${ARGN})"
        COMPONENT ${component}
    )
endfunction()
