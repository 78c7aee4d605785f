#include "platform/UsbTree.h"

#include <iterator>
#include <utility>

namespace orvalen {

UsbNode::UsbNode(std::optional<std::string> name, std::vector<UsbNode> items)
    : name(std::move(name)), items(std::move(items))
{
}

UsbNode::~UsbNode()
{
    // Whoever goes has nothing below any more: no destructor calls the next one down.
    for (auto doomed = std::move(items); !doomed.empty();) {
        auto below = std::move(doomed.back().items);
        doomed.pop_back();
        doomed.insert(doomed.end(), std::make_move_iterator(below.begin()), std::make_move_iterator(below.end()));
    }
}

} // namespace orvalen
