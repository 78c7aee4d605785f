#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace orvalen {

/// A subscription: destroying or replacing it ends it, also from within its own callback. Moving hands it on.
class [[nodiscard]] Subscription
{
public:
    Subscription() = default;
    explicit Subscription(std::shared_ptr<void> slot) : slot(std::move(slot)) {}

private:
    std::shared_ptr<void> slot; // the only owner; the sender holds it weakly
};

/// A list of callbacks. Main thread only, which debug builds check.
template <typename... Arguments>
class Signal
{
public:
    using Callback = std::function<void(Arguments...)>;

    Subscription subscribe(Callback callback)
    {
        assert(home == std::this_thread::get_id());
        forgetEnded();
        auto slot = std::make_shared<Callback>(std::move(callback));
        slots.push_back(slot);
        return Subscription(std::move(slot));
    }

    /// Calls every callback that was subscribed before the call and has not ended meanwhile, in order of subscription.
    /// If a callback sends again, the others hear only what was sent last.
    void send(const Arguments &...arguments)
    {
        assert(home == std::this_thread::get_id());
        const auto sending = ++sendings;
        const auto present = slots; // a callback may subscribe, end a subscription or send again
        for (const auto &slot : present) {
            if (sending != sendings)
                return;
            if (const auto callback = slot.lock())
                (*callback)(arguments...);
        }
    }

    [[nodiscard]] std::size_t subscriberCount() const
    {
        return static_cast<std::size_t>(
            std::count_if(slots.begin(), slots.end(), [](const auto &slot) { return !slot.expired(); }));
    }

private:
    void forgetEnded()
    {
        std::erase_if(slots, [](const auto &slot) { return slot.expired(); });
    }

    std::vector<std::weak_ptr<Callback>> slots;
    unsigned long sendings = 0;
    std::thread::id home = std::this_thread::get_id();
};

/// An object with published properties announces here that one of them is about to change.
class Observable
{
public:
    Observable() = default;
    Observable(const Observable &) = delete;
    Observable &operator=(const Observable &) = delete;

    /// `willChange` runs before each change of any property of this object, while the old value still stands.
    [[nodiscard]] Subscription observe(std::function<void()> willChange)
    {
        return willChangeSignal.subscribe(std::move(willChange));
    }

    [[nodiscard]] std::size_t observerCount() const { return willChangeSignal.subscriberCount(); }

private:
    template <typename T>
    friend class Published;
    Signal<> willChangeSignal;
};

/// A published property. Every assignment, of an equal value too, announces the change to the owner's observers,
/// changes the value, and sends the new value down the property's own stream. Main thread only.
template <typename T>
class Published
{
public:
    /// Runs between the change and the stream: what is shown has been kept already.
    using Keep = std::function<void(const T &)>;

    Published(Observable &owner, T initial, Keep keep = {})
        : owner(owner), current(std::move(initial)), keep(std::move(keep))
    {
    }
    Published(const Published &) = delete;
    Published &operator=(const Published &) = delete;

    [[nodiscard]] const T &value() const { return current; }
    operator const T &() const { return current; } // NOLINT: reads like the value it holds

    void set(T value)
    {
        owner.willChangeSignal.send();
        current = std::move(value);
        if (keep)
            keep(current);
        stream.send(T(current)); // a copy: a subscriber may set the property again
    }

    Published &operator=(T value)
    {
        set(std::move(value));
        return *this;
    }

    /// Changes the value in place; to everybody else it is an assignment.
    template <typename Change>
    void modify(Change change)
    {
        T changed = current;
        change(changed);
        set(std::move(changed));
    }

    /// Delivers the current value at once and then each new one.
    [[nodiscard]] Subscription subscribe(std::function<void(const T &)> receive)
    {
        auto subscription = stream.subscribe(receive);
        receive(T(current)); // a copy, as in set
        return subscription;
    }

    [[nodiscard]] std::size_t subscriberCount() const { return stream.subscriberCount(); }

private:
    Observable &owner;
    T current;
    Keep keep;
    Signal<T> stream;
};

} // namespace orvalen
