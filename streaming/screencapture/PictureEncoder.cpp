#include "streaming/screencapture/PictureEncoder.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <thread>

#include "streaming/screencapture/ContentHash.h"
#include "streaming/screencapture/Strips.h"

namespace orvalen {

unsigned helpersFor(unsigned changed, unsigned left, bool isNew, unsigned most)
{
    // One changed strip is a clock or the pointer; two are the sign of more.
    const unsigned enough = isNew ? 1 : 2;
    // A thread costs about a tenth of what a strip does: two strips for each make it worth while.
    return changed < enough ? 0 : std::min(most, left / 2);
}

/// Threads that work on further lanes. Waits for them at its end.
class PictureEncoder::Helpers
{
public:
    Helpers(PictureEncoder &encoder, Picture &picture) : encoder(encoder), picture(picture) {}
    ~Helpers() { join(); }

    Helpers(const Helpers &) = delete;
    Helpers &operator=(const Helpers &) = delete;

    void call(unsigned count)
    {
        failures.resize(count);
        try {
            for (unsigned i = 0; i < count; ++i)
                threads.emplace_back([this, i] {
                    try {
                        encoder.work(picture, i + 1, nullptr);
                    } catch (...) {
                        failures[i] = std::current_exception();
                    }
                });
        } catch (const std::system_error &) {
            // Fewer threads do the same, later.
        }
    }

    [[nodiscard]] bool areCalled() const { return !threads.empty(); }

    /// Throws what one of them threw.
    void finish()
    {
        join();
        for (const auto &failure : failures) {
            if (failure)
                std::rethrow_exception(failure);
        }
    }

private:
    void join()
    {
        for (auto &thread : threads)
            thread.join();
        threads.clear();
    }

    PictureEncoder &encoder;
    Picture &picture;
    std::vector<std::exception_ptr> failures;
    std::vector<std::thread> threads;
};

PictureEncoder::PictureEncoder(const PictureFormat &format, std::vector<EncodedStrip> previous, unsigned threads)
    : format(format), previous(std::move(previous)), encoded(strips::count(format.height)), encoders(threads)
{
}

void PictureEncoder::encode(Picture &picture)
{
    Helpers helpers(*this, picture);
    work(picture, 0, &helpers);
    helpers.finish();
}

void PictureEncoder::work(Picture &picture, unsigned lane, Helpers *helpers)
{
    unsigned changed = 0;
    while (const auto strip = picture.next(lane)) {
        const auto hash = contentHash(strip->pixels.data, strip->pixels.bytes());
        auto &result = encoded[strip->index];
        if (!previous.empty() && previous[strip->index].pixels == hash) {
            result = previous[strip->index];
            continue;
        }
        ++changed;
        if (helpers && !helpers->areCalled()) {
            const auto left = static_cast<unsigned>(encoded.size()) - strip->index - 1;
            const auto most = static_cast<unsigned>(encoders.size()) - 1;
            helpers->call(helpersFor(changed, left, previous.empty(), most));
        }
        if (!encoders[lane])
            encoders[lane] = std::make_unique<StripEncoder>(format);
        result = {hash, encoders[lane]->encode(strip->pixels)};
    }
}

bool PictureEncoder::isUnchanged() const
{
    return !previous.empty() &&
           std::equal(encoded.begin(), encoded.end(), previous.begin(), previous.end(),
                      [](const EncodedStrip &a, const EncodedStrip &b) { return a.pixels == b.pixels; });
}

} // namespace orvalen
