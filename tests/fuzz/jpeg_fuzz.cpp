// The file of an earlier picture, as the capture command reads it back: whatever stands there, what is taken over lies
// within it, and makes the same file again.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "streaming/screencapture/StripFile.h"
#include "streaming/screencapture/Strips.h"

namespace {

using namespace orvalen;

void check(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

std::string joined(const std::vector<std::string_view> &pieces)
{
    std::string all;
    for (const auto piece : pieces)
        all += piece;
    return all;
}

/// What is believed of a file.
void readBack(const PictureFormat &format, std::string_view contents)
{
    const std::string file(contents); // of its own, so that a look beyond its end is seen
    StripFile reader(format);
    const auto strips = reader.strips(file);
    if (!strips)
        return;
    check(strips->size() == strips::count(format.height));
    for (const auto &strip : *strips)
        check(strip.bytes.data() >= file.data() &&
              strip.bytes.data() + strip.bytes.size() <= file.data() + file.size());
    check(joined(reader.pieces(*strips)) == file);
}

/// Bytes of the input, one by one; zeros behind its end.
class Input
{
public:
    Input(const std::uint8_t *data, std::size_t size) : rest(reinterpret_cast<const char *>(data), size) {}

    unsigned byte()
    {
        if (rest.empty())
            return 0;
        const auto value = static_cast<unsigned char>(rest.front());
        rest.remove_prefix(1);
        return value;
    }
    std::string_view bytes(std::size_t count)
    {
        const auto taken = rest.substr(0, count);
        rest.remove_prefix(taken.size());
        return taken;
    }

    std::string_view rest;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    const bool isBuilt = input.byte() % 2 != 0;
    const auto width = static_cast<int>(1 + input.byte());
    const auto height = static_cast<int>(1 + 4 * input.byte());
    const PictureFormat format{width, height, {}};
    if (!isBuilt) {
        readBack(format, input.rest);
        return 0;
    }

    // A file with any strips, which nobody finds by chance: one without faults, and one with some.
    std::vector<EncodedStrip> strips(strips::count(height));
    for (auto &strip : strips)
        strip = {input.byte(), input.bytes(input.byte())};
    StripFile writer(format);
    auto file = joined(writer.pieces(strips));
    const auto found = writer.strips(file);
    check(found && found->size() == strips.size());
    for (std::size_t i = 0; i < strips.size(); ++i)
        check((*found)[i].pixels == strips[i].pixels && (*found)[i].bytes == strips[i].bytes);
    readBack(format, file);
    while (input.rest.size() >= 3) {
        const std::size_t place = input.byte() << 8 | input.byte();
        file[place % file.size()] = static_cast<char>(input.byte());
    }
    if (!input.rest.empty())
        file.resize(file.size() - input.byte() % file.size());
    readBack(format, file);
    return 0;
}
