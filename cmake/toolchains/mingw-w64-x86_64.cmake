# Builds for 64-bit Windows with MinGW-w64 (POSIX threads) and runs what was built under Wine.
#
# Qt and the other libraries come from a folder of their own, which script/test-windows builds once: the one that
# the environment variable QUILLMAP_WINDOWS_ROOT names, or the newest in the cache folder. Nothing is taken from the
# host's /usr/include or /usr/lib.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(DEFINED ENV{QUILLMAP_WINDOWS_ROOT})
    set(windows_root $ENV{QUILLMAP_WINDOWS_ROOT})
else()
    if(DEFINED ENV{QUILLMAP_CACHE})
        set(cache $ENV{QUILLMAP_CACHE})
    elseif(DEFINED ENV{XDG_CACHE_HOME})
        set(cache $ENV{XDG_CACHE_HOME}/quillmap)
    else()
        set(cache $ENV{HOME}/.cache/quillmap)
    endif()
    file(GLOB roots ${cache}/qt-mingw-*)
    list(SORT roots COMPARE NATURAL ORDER DESCENDING)
    if(NOT roots)
        message(FATAL_ERROR "There is no Qt for MinGW in ${cache}. script/test-windows builds it there.")
    endif()
    list(GET roots 0 windows_root)
endif()

set(CMAKE_FIND_ROOT_PATH ${windows_root} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Without a console Qt Test reports to the debugger, unless QT_FORCE_STDERR_LOGGING is set. Wine keeps variables that
# begin in QT_ from the program and hands on WINEQT_ in their place.
# Without conhost.exe a program that a test starts gets no console. When the program is killed as it starts, its console
# host would stay and hold the test's output open for ever.
find_program(WINE NAMES wine64 wine PATHS /usr/lib/wine)
set(CMAKE_CROSSCOMPILING_EMULATOR env
    WINEPREFIX=${windows_root}/wine
    WINEPATH=${windows_root}/bin
    WINEDEBUG=-all
    WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe,conhost.exe=
    WINEQT_FORCE_STDERR_LOGGING=1
    ${WINE})

# Wine shows the whole file system as a drive. Without its letter a path would mean another file after a change of
# drive, as into the folder for temporary files.
set(QUILLMAP_DRIVE "Z:")
