# Makes ${ORVALEN_MACOS_HEADERS}: what a compiler for macOS finds here in the place of the Mac's own headers. Sets
# ORVALEN_MACOS_INCLUDE_FOLDERS, in the order in which they are searched.
file(GLOB musl LIST_DIRECTORIES true /usr/include/*-linux-musl)
set(libcxx /usr/lib/llvm-19/include/c++/v1)
if(NOT musl OR NOT EXISTS "${libcxx}")
    message(FATAL_ERROR "The stand-ins for a Mac's headers need the packages musl-dev and libc++-19-dev.")
endif()

set(ORVALEN_MACOS_INCLUDE_FOLDERS
    "${ORVALEN_MACOS_HEADERS}/libcxx" # how the C++ library is configured
    "${libcxx}"
    "${CMAKE_CURRENT_LIST_DIR}/libc" # takes away what Darwin has not, and adds what only Darwin has
    "${CMAKE_CURRENT_LIST_DIR}/shims"
    "${CMAKE_CURRENT_LIST_DIR}/declarations"
    "${ORVALEN_MACOS_HEADERS}/libc"
    "${ORVALEN_MACOS_HEADERS}/libraries")

set(stamp "${ORVALEN_MACOS_HEADERS}/made")
set(isUpToDate ON)
foreach(source IN ITEMS "${CMAKE_CURRENT_LIST_FILE}" "${libcxx}/__config_site" "${musl}/bits/alltypes.h" "${musl}/poll.h")
    if("${source}" IS_NEWER_THAN "${stamp}") # also where there is none
        set(isUpToDate OFF)
    endif()
endforeach()
if(isUpToDate)
    return()
endif()
file(REMOVE_RECURSE "${ORVALEN_MACOS_HEADERS}")

# exchanged(FILE RESULT TEXT REPLACEMENT ...)   A copy with each text replaced; one that is not there is an error.
function(exchanged file result)
    file(READ "${file}" contents)
    while(ARGN)
        list(POP_FRONT ARGN text replacement)
        string(REPLACE "${text}" "${replacement}" changed "${contents}")
        if(changed STREQUAL contents)
            message(FATAL_ERROR "${file} has no \"${text}\" to be replaced.")
        endif()
        set(contents "${changed}")
    endwhile()
    file(WRITE "${result}" "${contents}")
endfunction()

# The C library, without the headers that Darwin's has not.
set(missing
    byteswap.h elf.h error.h fmtmsg.h lastlog.h link.h malloc.h mntent.h mqueue.h netpacket pty.h scsi shadow.h stdio_ext.h
    stropts.h syscall.h threads.h uchar.h ulimit.h utmp.h values.h wait.h
    sys/auxv.h sys/cachectl.h sys/dir.h sys/epoll.h sys/eventfd.h sys/fanotify.h sys/fsuid.h sys/inotify.h sys/io.h sys/kd.h
    sys/klog.h sys/membarrier.h sys/mtio.h sys/personality.h sys/prctl.h sys/procfs.h sys/quota.h sys/reg.h sys/sendfile.h
    sys/signalfd.h sys/soundcard.h sys/statfs.h sys/stropts.h sys/swap.h sys/sysinfo.h sys/sysmacros.h sys/timerfd.h
    sys/timex.h sys/vfs.h sys/vt.h)
file(GLOB_RECURSE headers RELATIVE "${musl}" "${musl}/*.h")
foreach(header IN LISTS headers)
    cmake_path(GET header PARENT_PATH folder)
    if(header IN_LIST missing OR folder IN_LIST missing)
        continue()
    endif()
    file(MAKE_DIRECTORY "${ORVALEN_MACOS_HEADERS}/libc/${folder}")
    file(CREATE_LINK "${musl}/${header}" "${ORVALEN_MACOS_HEADERS}/libc/${header}" SYMBOLIC)
endforeach()

# Its types are those of an Apple-silicon Mac: what has another width or another name is where code stops compiling.
file(REMOVE "${ORVALEN_MACOS_HEADERS}/libc/bits/alltypes.h" "${ORVALEN_MACOS_HEADERS}/libc/poll.h")
exchanged("${musl}/bits/alltypes.h" "${ORVALEN_MACOS_HEADERS}/libc/bits/alltypes.h"
    "#define _Int64 long\n" "#define _Int64 long long\n"
    "typedef signed _Int64   intmax_t" "typedef long intmax_t"
    "typedef unsigned _Int64 uintmax_t" "typedef unsigned long uintmax_t"
    "typedef _Int64 time_t" "typedef long time_t"
    "typedef _Int64 suseconds_t" "typedef int suseconds_t"
    "typedef unsigned mode_t" "typedef unsigned short mode_t"
    "typedef unsigned _Reg nlink_t" "typedef unsigned short nlink_t"
    "typedef unsigned _Int64 dev_t" "typedef int dev_t"
    "typedef long blksize_t" "typedef int blksize_t"
    "typedef long clock_t" "typedef unsigned long clock_t"
    "typedef int clockid_t" "#include <bits/darwin_clocks.h>"
    "typedef unsigned short sa_family_t" "typedef unsigned char sa_family_t")
exchanged("${musl}/poll.h" "${ORVALEN_MACOS_HEADERS}/libc/poll.h"
    "typedef unsigned long nfds_t" "typedef unsigned int nfds_t")

# The C++ library as a Mac's: what is newer than the deployment target cannot be used.
exchanged("${libcxx}/__config_site" "${ORVALEN_MACOS_HEADERS}/libcxx/__config_site"
    "#define _LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS" "")

# Of the libraries nothing but headers is needed, and not what else lies beside them.
file(MAKE_DIRECTORY "${ORVALEN_MACOS_HEADERS}/libraries")
foreach(library IN ITEMS boost nlohmann unicode qrencode.h)
    file(CREATE_LINK "/usr/include/${library}" "${ORVALEN_MACOS_HEADERS}/libraries/${library}" SYMBOLIC)
endforeach()

file(TOUCH "${stamp}")
