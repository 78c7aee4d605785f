#pragma once

#include <memory>
#include <string_view>

namespace orvalen {

/// Work that goes on whether or not a window of ours can be seen: while one of these lives, macOS does not stretch our
/// timers as it does for a program that nobody looks at ("App Nap"). The machine may go to sleep all the same.
class [[nodiscard]] UserActivity
{
public:
    /// `reason`: for whoever asks the system what a program is at.
    explicit UserActivity(std::string_view reason);
    ~UserActivity();
    UserActivity(const UserActivity &) = delete;
    UserActivity &operator=(const UserActivity &) = delete;

private:
    struct Token;
    std::unique_ptr<Token> token;
};

} // namespace orvalen
