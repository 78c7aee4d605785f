#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Application.h"
#include "platform/StatusBar.h"
#include "tests/support/StreamFakes.h"

namespace orvalen::test {

/// A desktop with windows of ours that are named.
struct FakeApplication : Application
{
    struct Window
    {
        std::string name;
        bool canBecomeKey = true;
    };

    explicit FakeApplication(Diary &diary) : diary(diary) {}

    std::vector<Window> open;

    void setActivationPolicy(ActivationPolicy policy) override
    {
        diary.note("activation policy " + std::to_string(static_cast<int>(policy)));
    }
    void activate(bool ignoringOtherApps) override
    {
        diary.note(ignoringOtherApps ? "activate, ignoring others" : "activate");
    }
    std::vector<std::unique_ptr<ApplicationWindow>> windows() override
    {
        std::vector<std::unique_ptr<ApplicationWindow>> all;
        for (const auto &window : open)
            all.push_back(std::make_unique<Handle>(diary, window));
        return all;
    }

private:
    struct Handle : ApplicationWindow
    {
        Handle(Diary &diary, Window window) : diary(diary), window(std::move(window)) {}
        bool canBecomeKeyWindow() const override { return window.canBecomeKey; }
        void makeKeyAndOrderFront() override { diary.note("front " + window.name); }

        Diary &diary;
        Window window;
    };

    Diary &diary;
};

/// A bar that may refuse the button, and a person who clicks.
struct FakeStatusBar : StatusBar
{
    explicit FakeStatusBar(Diary &diary) : diary(diary) {}

    bool hasButton = true;
    int items = 0; ///< How many are in the bar.
    std::string image;
    std::string title;
    std::function<void()> click;

    std::unique_ptr<StatusItem> statusItemWithLength(double length) override
    {
        diary.note("item of length " + std::to_string(static_cast<int>(length)));
        return std::make_unique<Item>(*this);
    }

private:
    struct Item : StatusItem, StatusItemButton
    {
        explicit Item(FakeStatusBar &bar) : bar(bar) { ++bar.items; }
        ~Item() override { --bar.items; }
        StatusItemButton *button() override { return bar.hasButton ? this : nullptr; }
        void setImage(std::string_view symbol, std::string_view accessibilityDescription) override
        {
            bar.image = symbol;
            bar.diary.note("image " + bar.image + " that says " + std::string(accessibilityDescription));
        }
        void setImagePosition(ImagePosition position) override
        {
            bar.diary.note("image position " + std::to_string(static_cast<int>(position)));
        }
        void setTitle(std::string_view title) override
        {
            bar.title = title;
            bar.diary.note("title \"" + bar.title + "\"");
        }
        void setAction(std::function<void()> action) override
        {
            bar.click = std::move(action);
            bar.diary.note("action");
        }

        FakeStatusBar &bar;
    };

    Diary &diary;
};

} // namespace orvalen::test
