# Target QzAudioPlatform: headers and libraries of the platform that the library is linked with.
#
# The sources include <spaudiosetting.h>, <mcuservice.h> and <settingsprovider.h> and never care whose they are.

add_library(QzAudioPlatform INTERFACE)

if(QZAUDIO_PLATFORM STREQUAL "simulator")
    add_subdirectory(simulator)
    target_link_libraries(QzAudioPlatform INTERFACE qzaudio_simulator)
elseif(QZAUDIO_PLATFORM STREQUAL "vendor")
    if(NOT IS_DIRECTORY "${QZAUDIO_PLATFORM_SDK}/include" OR NOT IS_DIRECTORY "${QZAUDIO_PLATFORM_SDK}/lib")
        message(FATAL_ERROR
            "QZAUDIO_PLATFORM=vendor needs QZAUDIO_PLATFORM_SDK to name a folder with include/ and lib/; see docs/integration.md. "
            "It is \"${QZAUDIO_PLATFORM_SDK}\".")
    endif()
    file(GLOB QZAUDIO_PLATFORM_LIBRARIES ${QZAUDIO_PLATFORM_SDK}/lib/lib*.so)
    if(NOT QZAUDIO_PLATFORM_LIBRARIES)
        message(FATAL_ERROR "There is no lib*.so in ${QZAUDIO_PLATFORM_SDK}/lib.")
    endif()
    target_include_directories(QzAudioPlatform SYSTEM INTERFACE ${QZAUDIO_PLATFORM_SDK}/include)
    target_link_libraries(QzAudioPlatform INTERFACE ${QZAUDIO_PLATFORM_LIBRARIES})
else()
    message(FATAL_ERROR "QZAUDIO_PLATFORM is simulator or vendor, not \"${QZAUDIO_PLATFORM}\".")
endif()
