"""Which library a header in angle brackets belongs to."""
import re

STANDARD = set('''
algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes climits clocale
cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal cstdarg cstddef cstdint cstdio cstdlib
cstring ctime cuchar cwchar cwctype deque exception execution filesystem format forward_list fstream functional future
initializer_list iomanip ios iosfwd iostream istream iterator latch limits list locale map memory memory_resource mutex new
numbers numeric optional ostream queue random ranges ratio regex scoped_allocator semaphore set shared_mutex
source_location span sstream stack stdexcept stop_token streambuf string string_view strstream syncstream system_error
thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray variant vector version
'''.split())

# What both Linux and macOS have of POSIX and its customary neighbours.
POSIX = set('''
arpa/inet.h assert.h ctype.h dirent.h dlfcn.h errno.h fcntl.h fnmatch.h glob.h ifaddrs.h inttypes.h langinfo.h limits.h locale.h math.h net/if.h
netdb.h netinet/in.h netinet/tcp.h poll.h pthread.h pwd.h regex.h sched.h semaphore.h signal.h spawn.h stdint.h stdio.h stdlib.h
string.h strings.h sys/file.h sys/ioctl.h sys/mman.h sys/resource.h sys/select.h sys/socket.h sys/stat.h sys/time.h
sys/times.h sys/types.h sys/uio.h sys/un.h sys/utsname.h sys/wait.h syslog.h termios.h time.h unistd.h
'''.split())

# The small libraries that the rules may use.
SMALL = re.compile(r'(nlohmann/.*|qrencode\.h|unicode/.*)$')
QT = re.compile(r'Q[A-Z]\w*(/\w+)?$|q[a-z_0-9]+\.h$|Qt\w*/.*$')
BOOST = re.compile(r'boost/.*$')
JPEG = re.compile(r'(turbojpeg|jpeglib)\.h$')
LINUX = re.compile(
    r'(linux|asm|asm-generic|bits|systemd|libudev|dbus|xcb|X11|xkbcommon|vulkan|pipewire|spa|alsa|pulse)(/.*|\.h)$|'
    r'(wayland-|libei|canberra|fontconfig/|sensors/|libspeechd|speech-dispatcher/|gio/|glib).*$|'
    r'(endian|byteswap|elf|error|features|link|malloc|mntent|mqueue|pty|shadow|stdio_ext|syscall|threads|uchar|values)\.h$|'
    r'sys/(epoll|eventfd|inotify|fanotify|signalfd|timerfd|prctl|sysinfo|sendfile|syscall|statfs|vfs|xattr|random|auxv|'
    r'personality|capability|sysmacros|klog|mount)\.h$')
MACOS = re.compile(
    r'(AppKit|ApplicationServices|Carbon|Cocoa|CoreFoundation|CoreGraphics|CoreImage|CoreServices|Foundation|IOKit|Metal|QuartzCore|'
    r'Security|AVFoundation|ScreenCaptureKit|dispatch|libkern|mach|mach-o|malloc|objc|os|pthread|xpc)/.*$|'
    r'(TargetConditionals|Availability|AvailabilityMacros|libproc|notify|xlocale)\.h$|sys/(event|qos|sysctl)\.h$')


def library_of(header):
    """'standard', 'posix', 'small', 'qt', 'boost', 'jpeg', 'linux', 'macos', or 'other'."""
    if header in STANDARD:
        return 'standard'
    if header in POSIX:
        return 'posix'
    for name, pattern in (('small', SMALL), ('qt', QT), ('boost', BOOST), ('jpeg', JPEG), ('linux', LINUX), ('macos', MACOS)):
        if pattern.match(header):
            return name
    return 'other'
