#pragma once

#include <QObject>

#include <concepts>
#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/Published.h"

namespace orvalen::kit {

template <typename T>
inline constexpr bool isPublished = false;
template <typename T>
inline constexpr bool isPublished<Published<T>> = true;

/// What a widget shows: a constant, a published value, or a function of published values. The views write
///
///     text("STANDBY")
///     toggle(state.smartModeEnabled)
///     text({state.targetTemp, [](double target) { return ...; }})
///     text({state.isWarmingUp, state.thermalData, someFunction})
///
/// and the widget that takes it follows it for as long as it lives. The published values must outlive the widget.
template <typename T>
class Live
{
public:
    using Receive = std::function<void(const T &)>;

    template <typename Constant>
    requires std::convertible_to<Constant, T> &&
        (!isPublished<std::remove_cvref_t<Constant>>)&&(!std::same_as<std::remove_cvref_t<Constant>, Live>)
            Live(Constant &&constant) // NOLINT: a constant is a live value that never changes
        : start([value = T(std::forward<Constant>(constant))](const Receive &receive) {
              receive(value);
              return Subscriptions{};
          })
    {
    }

    Live(Published<T> &published) // NOLINT: stands for its value
        : start([&published](const Receive &receive) {
              Subscriptions subscriptions;
              subscriptions.push_back(published.subscribe(receive));
              return subscriptions;
          })
    {
    }

    /// Published values, and a function of them as the last argument.
    template <typename First, typename... Rest>
    requires(sizeof...(Rest) > 0) Live(Published<First> &first, Rest &&...rest) // NOLINT: read as one value
    {
        compose(std::forward_as_tuple(first, rest...), std::make_index_sequence<sizeof...(Rest)>{});
    }

    /// Gives the present value to `receive` now and each new one when it comes, until `owner` is destroyed.
    void follow(QObject &owner, const Receive &receive) const
    {
        if (auto subscriptions = start(receive); !subscriptions.empty())
            new Bond(owner, std::move(subscriptions));
    }

private:
    using Subscriptions = std::vector<Subscription>;

    struct Bond : QObject
    {
        Bond(QObject &owner, Subscriptions given) : QObject(&owner), subscriptions(std::move(given)) {}
        Subscriptions subscriptions;
    };

    template <typename Arguments, std::size_t... Index>
    void compose(const Arguments &arguments, std::index_sequence<Index...>)
    {
        start = [function = std::get<sizeof...(Index)>(arguments),
                 sources = std::tuple(&std::get<Index>(arguments)...)](const Receive &receive) {
            const auto refresh = [=](const auto &) {
                std::apply([&](auto *...source) { receive(std::invoke(function, source->value()...)); }, sources);
            };
            Subscriptions subscriptions;
            std::apply([&](auto *...source) { (subscriptions.push_back(source->subscribe(refresh)), ...); }, sources);
            return subscriptions;
        };
    }

    std::function<Subscriptions(const Receive &)> start;
};

} // namespace orvalen::kit
