#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace orvalen::test {

/// An X server without a screen, of the test's own: no other program knows it. Ends with the object.
class XServer
{
public:
    /// Returns when the server takes connections; throws std::runtime_error where there is none to be had.
    explicit XServer(std::vector<std::string> options = {});
    ~XServer();

    XServer(const XServer &) = delete;
    XServer &operator=(const XServer &) = delete;

    [[nodiscard]] std::string display() const { return name; }

    /// Somebody presses and releases a key.
    void pressKey() const;

    void suspend() const; ///< It takes questions and does not answer.
    void resume() const;
    void kill(); ///< At once, as in a crash.

private:
    pid_t process = -1;
    std::string name;
};

} // namespace orvalen::test
