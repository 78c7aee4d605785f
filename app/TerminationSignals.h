#pragma once

#include <QObject>

namespace orvalen {

/// Turns the system's requests to end (SIGTERM, SIGINT, SIGHUP) into a quit of the event loop, also one that came
/// before the loop runs. One at a time, main thread; from its destruction on the signals end the process at once, as
/// usual.
class TerminationSignals : public QObject
{
public:
    TerminationSignals();
    ~TerminationSignals() override;
};

} // namespace orvalen
