#include "platform/linux/InputIdleTimeX11.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>

#include "tests/support/XServer.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using test::XServer;

template <typename Condition>
void waitUntil(Condition condition)
{
    while (!condition())
        std::this_thread::sleep_for(1ms);
}

TEST(InputIdleTimeX11, growsWhileNobodyTouchesAnything)
{
    const XServer server;
    InputIdleTimeX11 idle(server.display());
    ASSERT_TRUE(idle.isAvailable());
    const auto before = idle.sinceLastInput();
    ASSERT_TRUE(before.has_value());
    waitUntil([&] { return idle.sinceLastInput() >= *before + 50ms; });
}

TEST(InputIdleTimeX11, aKeyStartsItAnew)
{
    const XServer server;
    InputIdleTimeX11 idle(server.display());
    waitUntil([&] { return idle.sinceLastInput() >= 300ms; });
    const auto before = idle.sinceLastInput();
    ASSERT_TRUE(before.has_value());
    // Without a key it could only grow. On a busy machine the news of one key may come too late to be seen.
    waitUntil([&] {
        server.pressKey();
        const auto after = idle.sinceLastInput();
        return after && *after < *before;
    });
}

TEST(InputIdleTimeX11, findsTheServerThatTheEnvironmentNames)
{
    const XServer server;
    const char *const before = std::getenv("DISPLAY");
    const std::string kept = before ? before : "";
    ::setenv("DISPLAY", server.display().c_str(), 1);
    EXPECT_TRUE(InputIdleTimeX11().sinceLastInput().has_value());
    ::unsetenv("DISPLAY");
    EXPECT_FALSE(InputIdleTimeX11().isAvailable());
    EXPECT_EQ(InputIdleTimeX11().sinceLastInput(), std::nullopt);
    if (before)
        ::setenv("DISPLAY", kept.c_str(), 1);
}

TEST(InputIdleTimeX11, withoutAServerThereIsNone)
{
    for (const auto *nowhere : {":54321", "no display", "unix:", ":", "tcp/localhost:54321"}) {
        InputIdleTimeX11 idle(nowhere);
        EXPECT_FALSE(idle.isAvailable()) << nowhere;
        EXPECT_EQ(idle.sinceLastInput(), std::nullopt) << nowhere;
    }
}

TEST(InputIdleTimeX11, withoutTheExtensionThereIsNone)
{
    const XServer server({"-extension", "MIT-SCREEN-SAVER"});
    InputIdleTimeX11 idle(server.display());
    EXPECT_FALSE(idle.isAvailable());
    EXPECT_EQ(idle.sinceLastInput(), std::nullopt);
}

TEST(InputIdleTimeX11, aServerThatDiesTakesItAlong)
{
    XServer server;
    InputIdleTimeX11 idle(server.display());
    ASSERT_TRUE(idle.sinceLastInput().has_value());
    server.kill();
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(idle.sinceLastInput(), std::nullopt);
    EXPECT_FALSE(idle.isAvailable());
}

TEST(InputIdleTimeX11, aServerThatDiesAmongQuestionsEndsNothingElse)
{
    XServer server;
    InputIdleTimeX11 idle(server.display());
    std::atomic<int> answers = 0;
    std::vector<std::thread> askers;
    for (int i = 0; i < 4; ++i) {
        askers.emplace_back([&] {
            while (idle.isAvailable()) // a busy machine may leave a question without an answer before that
                answers += idle.sinceLastInput() ? 1 : 0;
        });
    }
    waitUntil([&] { return answers > 100; });
    server.kill();
    for (auto &asker : askers)
        asker.join();
    EXPECT_EQ(idle.sinceLastInput(), std::nullopt);
}

TEST(InputIdleTimeX11, doesNotWaitForAServerThatHangs)
{
    const XServer server;
    InputIdleTimeX11 idle(server.display());
    ASSERT_TRUE(idle.sinceLastInput().has_value());
    server.suspend();
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(idle.sinceLastInput(), std::nullopt);
    server.resume();
    waitUntil([&] { return idle.sinceLastInput().has_value(); });
    EXPECT_TRUE(idle.isAvailable());
}

TEST(InputIdleTimeX11, manyThreadsAskAtOnce)
{
    const XServer server;
    InputIdleTimeX11 idle(server.display());
    std::vector<std::thread> askers;
    for (int i = 0; i < 8; ++i) {
        askers.emplace_back([&] {
            for (int n = 0; n < 100; ++n)
                waitUntil([&] { return idle.sinceLastInput().has_value(); });
        });
    }
    for (auto &asker : askers)
        asker.join();
    EXPECT_TRUE(idle.isAvailable());
}

} // namespace
} // namespace orvalen
