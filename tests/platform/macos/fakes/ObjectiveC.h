#pragma once

namespace orvalen::fake {

/// A runtime for Objective-C, enough of it for our adapters and for the fakes of the frameworks they call. Objects
/// count their references and are never freed: a message to one that nobody owns any more ends the test, and so does a
/// message that an object does not understand.

/// Objects that somebody still owns.
[[nodiscard]] int livingObjects();

/// Leaves an object to the innermost pool, as the system's code does of its own accord.
void leaveSomethingToThePool();

#ifdef __OBJC__
/// A message chosen at run time, to and with objects that are not kept alive for it.
void send(void *receiver, SEL selector, void *argument);
#endif

} // namespace orvalen::fake
