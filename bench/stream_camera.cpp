// A camera for programs that take their pictures from one (Video4Linux), preloaded into them:
// LD_PRELOAD=stream_camera.so.
//
//   ORVALEN_CAMERA          a file; who opens it gets the camera
//   ORVALEN_STAND_IN_FRAME  the JPEG that it sees, with a new stamp (stream_stamp.h) twelve times a second
//
// Just enough of the interface for a streaming program that passes Motion JPEG on as it comes. Buffers lie in a file in
// memory, so that the program's own mmap() works on it, and it is always ready: fetching a picture waits for it to be
// due.

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/videodev2.h>
#include <sys/mman.h>
#include <sys/select.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <mutex>
#include <queue>
#include <string>
#include <thread>

#include "bench/stream_stamp.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto period = std::chrono::nanoseconds(1s) / 12;
constexpr std::size_t bufferSize = 1 << 20;

template <typename Function>
Function *systems(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

const char *cameraPath()
{
    const char *path = std::getenv("ORVALEN_CAMERA");
    return path ? path : "";
}

class Camera
{
public:
    int open()
    {
        memory = memfd_create("camera", MFD_CLOEXEC);
        std::ifstream file(std::getenv("ORVALEN_STAND_IN_FRAME"), std::ios::binary);
        jpeg.assign(std::istreambuf_iterator<char>(file), {});
        due = Clock::now();
        return memory;
    }

    [[nodiscard]] bool is(int descriptor) const { return descriptor >= 0 && descriptor == memory; }

    void waitForPicture() const { std::this_thread::sleep_until(due); }

    int control(unsigned request, void *argument)
    {
        switch (request) {
        case VIDIOC_QUERYCAP: {
            auto &capability = *static_cast<v4l2_capability *>(argument);
            capability = {};
            capability.capabilities = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING | V4L2_CAP_DEVICE_CAPS;
            capability.device_caps = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING;
            return 0;
        }
        case VIDIOC_G_FMT:
        case VIDIOC_S_FMT:
        case VIDIOC_TRY_FMT: {
            auto &picture = static_cast<v4l2_format *>(argument)->fmt.pix;
            picture.width = 1440;
            picture.height = 900;
            picture.pixelformat = V4L2_PIX_FMT_MJPEG;
            picture.sizeimage = bufferSize;
            picture.bytesperline = 0;
            return 0;
        }
        case VIDIOC_G_PARM:
        case VIDIOC_S_PARM: {
            auto &parameters = static_cast<v4l2_streamparm *>(argument)->parm.capture;
            parameters.capability = V4L2_CAP_TIMEPERFRAME;
            parameters.timeperframe = {1, 12};
            return 0;
        }
        case VIDIOC_REQBUFS:
            return ftruncate(memory,
                             static_cast<off_t>(static_cast<v4l2_requestbuffers *>(argument)->count * bufferSize));
        case VIDIOC_QUERYBUF: {
            auto &buffer = *static_cast<v4l2_buffer *>(argument);
            buffer.length = bufferSize;
            buffer.m.offset = static_cast<std::uint32_t>(buffer.index * bufferSize);
            return 0;
        }
        case VIDIOC_QBUF: {
            const std::lock_guard lock(mutex);
            free.push(static_cast<v4l2_buffer *>(argument)->index);
            return 0;
        }
        case VIDIOC_DQBUF:
            return fetch(*static_cast<v4l2_buffer *>(argument));
        case VIDIOC_S_INPUT:
        case VIDIOC_STREAMON:
        case VIDIOC_STREAMOFF:
            return 0;
        default:
            errno = ENOTTY;
            return -1;
        }
    }

private:
    int fetch(v4l2_buffer &buffer)
    {
        waitForPicture();
        due = std::max(due + period, Clock::now());
        const std::lock_guard lock(mutex);
        if (free.empty()) {
            errno = EAGAIN;
            return -1;
        }
        buffer.index = free.front();
        free.pop();
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        const orvalen::bench::StreamStamp stamp{std::chrono::nanoseconds(now).count(), ++count};
        const std::string frame = stamp.on(jpeg);
        if (frame.size() > bufferSize ||
            ::pwrite(memory, frame.data(), frame.size(), static_cast<off_t>(buffer.index * bufferSize)) < 0)
            return -1;
        const auto uptime = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch());
        buffer.timestamp = {uptime.count() / 1'000'000, uptime.count() % 1'000'000};
        buffer.bytesused = static_cast<std::uint32_t>(frame.size());
        buffer.length = bufferSize;
        buffer.sequence = count;
        buffer.flags = 0;
        return 0;
    }

    std::mutex mutex;
    std::queue<std::uint32_t> free;
    std::string jpeg;
    int memory = -1;
    std::uint32_t count = 0;
    Clock::time_point due;
};

Camera &camera()
{
    static auto *const one = new Camera;
    return *one;
}

} // namespace

// In the place of the system's.

extern "C" int open(const char *path, int flags, ...)
{
    if (std::strcmp(path, cameraPath()) == 0)
        return camera().open();
    va_list rest;
    va_start(rest, flags);
    const auto mode = va_arg(rest, mode_t);
    va_end(rest);
    return systems<int(const char *, int, ...)>("open")(path, flags, mode);
}

extern "C" int open64(const char *path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const auto mode = va_arg(rest, mode_t);
    va_end(rest);
    return open(path, flags, mode);
}

extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept
{
    va_list rest;
    va_start(rest, request);
    void *const argument = va_arg(rest, void *);
    va_end(rest);
    if (camera().is(descriptor))
        return camera().control(static_cast<unsigned>(request), argument); // some pass it as a signed number
    return systems<int(int, unsigned long, ...)>("ioctl")(descriptor, request, argument);
}

extern "C" int select(int count, fd_set *reading, fd_set *writing, fd_set *failing, timeval *limit)
{
    for (int descriptor = 0; reading && descriptor < count; ++descriptor) {
        if (!FD_ISSET(descriptor, reading) || !camera().is(descriptor))
            continue;
        camera().waitForPicture();
        for (fd_set *const set : {reading, writing, failing})
            if (set)
                FD_ZERO(set);
        FD_SET(descriptor, reading);
        return 1;
    }
    return systems<int(int, fd_set *, fd_set *, fd_set *, timeval *)>("select")(count, reading, writing, failing,
                                                                                limit);
}
