// Whole requests, from the first byte to the choice of the answer.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "streaming/server/Answers.h"
#include "streaming/server/Contract.h"
#include "streaming/server/DisplayNumber.h"

using namespace orvalen;

namespace {

void check(bool condition)
{
    if (!condition)
        std::abort();
}

bool isPartOf(std::string_view part, std::string_view whole)
{
    return part.empty() || (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    const auto parsed = parseRequestHead(bytes);
    if (const auto *head = std::get_if<RequestHead>(&parsed)) {
        check(!head->method.empty() && isPartOf(head->method, bytes));
        check(head->path == "/" || isPartOf(head->path, bytes));
        check(isPartOf(head->query, bytes));
        check(head->path.find('?') == std::string_view::npos);
        // A request is complete with its last line, and what follows does not matter.
        check(bytes.find("\r\n\r\n") != std::string_view::npos);
        const auto answer = answerTo(routeOf(*head), WallTime());
        check(std::string_view(answer.head).ends_with("\r\n\r\n"));
        (void)displayNumber(head->query);
    } else if (std::get<NoRequest>(parsed) == NoRequest::incomplete) {
        check(size < limits::requestHeadBytes);
    }
    return 0;
}
