#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/ProgramInstance.h"

class QSocketNotifier;
struct sd_bus;

namespace orvalen {

/// The program that owns a name on the session's bus is the one. It exports org.freedesktop.Application, by which later
/// starts, and the desktop, ask it.
///
/// A running program that does not answer in time counts as running all the same: it may just be starting on a slow
/// machine, two of them would heat at once, and the request waits for it. A dead one loses its name by itself. Somebody
/// who has the name and does not know the interface is none of ours. With a bus that says nothing for all that time
/// each start is a program, and the toolkit's connections to it are none, so that nobody in this process waits for it.
class ProgramInstanceDBus : public ProgramInstance
{
public:
    /// The object's path follows from the name. `patience` bounds `begin` as a whole: enough for a bus on a machine
    /// that has much to do, as after a login.
    explicit ProgramInstanceDBus(std::string busName, std::chrono::milliseconds patience = std::chrono::seconds(5));
    ~ProgramInstanceDBus() override;

    /// Before there are other threads.
    [[nodiscard]] bool begin() override;

    /// Wants an event loop in this thread.
    void serve(Requests requests) override;

    // For what the bus calls.
    [[nodiscard]] const Requests &served() const { return requests; }

private:
    struct Close
    {
        void operator()(sd_bus *bus) const;
    };

    void answer();

    std::string busName;
    std::string path;
    std::chrono::milliseconds patience;
    Requests requests;
    std::unique_ptr<sd_bus, Close> bus; ///< None where there is no bus, or the name is not ours.
    std::unique_ptr<QSocketNotifier> calls;
};

} // namespace orvalen
