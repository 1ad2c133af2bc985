# Fills in files that name the place where they and others are installed. Runs when installing: CMAKE_INSTALL_PREFIX is where to, and
# QZAUDIO_BINDIR, QZAUDIO_DATADIR and QZAUDIO_DOCDIR are absolute or below it.

include("${CMAKE_CURRENT_LIST_DIR}/QzAudioCompress.cmake")

get_filename_component(prefix "${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
foreach(folder BINDIR DATADIR DOCDIR)
    get_filename_component(${folder} "${QZAUDIO_${folder}}" ABSOLUTE BASE_DIR "${prefix}")
    # A minus sign is a hyphen unless it is escaped.
    string(REPLACE "\\" "\\e" ${folder}_FOR_ROFF "${${folder}}")
    string(REPLACE "-" "\\-" ${folder}_FOR_ROFF "${${folder}_FOR_ROFF}")
endforeach()

# systemd expands percent signs, and both split at spaces.
set(DAEMON_FOR_DBUS "${BINDIR}/qzaudio-focusd")
string(REPLACE "%" "%%" DAEMON_FOR_SYSTEMD "${DAEMON_FOR_DBUS}")
foreach(daemon DAEMON_FOR_DBUS DAEMON_FOR_SYSTEMD)
    if(NOT ${daemon} MATCHES "^[A-Za-z0-9/._%+-]*$")
        set(${daemon} "\"${${daemon}}\"")
    endif()
endforeach()

# qzaudio_check_daemon(): of these characters systemd and the bus each understand some in a way of their own, and some not at all.
function(qzaudio_check_daemon)
    if(BINDIR MATCHES "[\"'\\\\$`;\t\r\n]")
        message(FATAL_ERROR "systemd and the bus could not start the daemon in \"${BINDIR}\". Install below a folder whose name has no quotes, "
            "backslashes, dollar signs, semicolons, tabs or line breaks.")
    endif()
endfunction()

# qzaudio_install_filled(TEMPLATE FOLDER DESTINATION [COMPRESSED]): FOLDER holds the file until it is installed
function(qzaudio_install_filled template folder destination)
    get_filename_component(name "${template}" NAME)
    string(REGEX REPLACE "\\.in$" "" name "${name}")
    file(REMOVE "${folder}/${name}") # else it would be no newer than what is installed when nothing changes in it
    configure_file("${template}" "${folder}/${name}" @ONLY)
    if("${ARGN}" STREQUAL COMPRESSED)
        qzaudio_compress("${folder}/${name}" "${folder}/${name}.gz")
        string(APPEND name .gz)
    endif()
    get_filename_component(destination "${destination}" ABSOLUTE BASE_DIR "${prefix}")
    file(INSTALL DESTINATION "${destination}" TYPE FILE FILES "${folder}/${name}")
endfunction()
