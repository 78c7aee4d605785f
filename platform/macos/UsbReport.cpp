#include "platform/macos/UsbReport.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include <nlohmann/json.hpp>

namespace orvalen {

namespace {

using Json = nlohmann::json;

/// Builds the tree while the report is being read: a document in between would cost many times its size.
class Reader : public Json::json_sax_t
{
public:
    explicit Reader(std::string_view reportKey) : reportKey(reportKey) {}

    [[nodiscard]] std::vector<UsbNode> take() { return std::move(report); }

    bool null() override { return other(); }
    bool boolean(bool) override { return other(); }
    bool number_integer(number_integer_t) override { return other(); }
    bool number_unsigned(number_unsigned_t) override { return other(); }
    bool number_float(number_float_t, const string_t &) override { return other(); }
    bool binary(binary_t &) override { return other(); }

    bool string(string_t &text) override
    {
        other();
        if (ignored == 0 && isInNode() && announced == Announced::name)
            nodes.back().name = std::move(text);
        return true;
    }

    bool key(string_t &text) override
    {
        if (ignored > 0)
            return true;
        announced = Announced::other;
        if (isInNode() ? text == "_items" : text == reportKey)
            announced = Announced::items;
        else if (isInNode() && text == "_name")
            announced = Announced::name;
        return true;
    }

    bool start_object(std::size_t) override
    {
        if (ignored > 0) {
            ++ignored;
        } else if (!isInReport) {
            isInReport = true;
        } else if (isInList() && lists.back().isOfNodes) {
            nodes.emplace_back();
        } else {
            other();
            ignored = 1;
        }
        return true;
    }

    bool end_object() override
    {
        if (ignored > 0) {
            --ignored;
        } else if (isInNode()) {
            lists.back().nodes.push_back(std::move(nodes.back()));
            nodes.pop_back();
        }
        return true;
    }

    bool start_array(std::size_t) override
    {
        if (ignored > 0) {
            ++ignored;
        } else if (isInReport && !isInList() && announced == Announced::items) {
            lists.emplace_back();
        } else {
            other();
            ignored = 1;
        }
        return true;
    }

    bool end_array() override
    {
        if (ignored > 0) {
            --ignored;
        } else {
            auto list = std::move(lists.back().nodes); // empty unless all of them were nodes
            lists.pop_back();
            itemsHere() = std::move(list);
        }
        return true;
    }

    bool parse_error(std::size_t, const std::string &, const Json::exception &) override { return false; }

private:
    /// What the key said that was read last.
    enum class Announced
    {
        other,
        name,
        items,
    };

    struct List
    {
        bool isOfNodes = true; ///< Nothing but dictionaries so far.
        std::vector<UsbNode> nodes;
    };

    [[nodiscard]] bool isInList() const { return lists.size() > nodes.size(); }
    [[nodiscard]] bool isInNode() const { return !nodes.empty() && !isInList(); }
    std::vector<UsbNode> &itemsHere() { return nodes.empty() ? report : nodes.back().items; }

    /// A value of which only one thing matters: that it stands where another kind of value was wanted.
    bool other()
    {
        if (ignored > 0 || !isInReport)
            return true;
        if (isInList()) {
            lists.back().isOfNodes = false;
            lists.back().nodes.clear();
        } else if (announced == Announced::items) {
            itemsHere().clear();
        } else if (announced == Announced::name) {
            nodes.back().name.reset();
        }
        return true;
    }

    const std::string_view reportKey;
    std::vector<UsbNode> report;
    bool isInReport = false;    ///< The outermost value is a dictionary.
    std::vector<List> lists;    ///< Open ones, the innermost last.
    std::vector<UsbNode> nodes; ///< Open ones; each is an element of the list at the same place.
    Announced announced = Announced::other;
    std::size_t ignored = 0; ///< How many values are open of which nothing is wanted.
};

} // namespace

std::vector<UsbNode> usbNodesInReport(std::string_view report, std::string_view key)
{
    Reader reader(key);
    const bool isText = report.find('\0') == std::string_view::npos; // the parser would take it for the end
    if (!isText || !Json::sax_parse(report.begin(), report.end(), &reader))
        return {};
    return reader.take();
}

} // namespace orvalen
