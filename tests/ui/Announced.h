#pragma once

#include <QAccessible>

#include <functional>
#include <utility>

namespace orvalen::test {

/// Listens to what screen readers are told, for as long as it lives. One at a time.
class Announced
{
public:
    explicit Announced(std::function<void(const QAccessibleEvent &)> newReceive)
    {
        receive = std::move(newReceive);
        QAccessible::setActive(true); // else nobody is told anything
        previous = QAccessible::installUpdateHandler([](QAccessibleEvent *event) { receive(*event); });
    }
    ~Announced()
    {
        QAccessible::installUpdateHandler(previous);
        QAccessible::setActive(wasActive);
    }
    Announced(const Announced &) = delete;
    Announced &operator=(const Announced &) = delete;

private:
    static inline std::function<void(const QAccessibleEvent &)> receive;
    const bool wasActive = QAccessible::isActive();
    QAccessible::UpdateHandler previous;
};

} // namespace orvalen::test
