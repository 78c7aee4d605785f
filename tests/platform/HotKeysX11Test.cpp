#include "platform/linux/HotKeysX11.h"

#include <gmock/gmock.h>

#include <X11/keysym.h>
#include <array>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>
#include <xcb/xcb.h>

#include "platform/Dispatch.h"
#include "platform/linux/KeyGrabsX11.h"
#include "platform/linux/KeyMapX11.h"
#include "platform/linux/X11Session.h"
#include "tests/support/Typist.h"
#include "tests/support/XServer.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using test::Typist;
using test::XServer;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using x11::Reply;

constexpr HotKey warmup{13, HotKey::commandKey + HotKey::optionKey, {0x4F565231, 1}};
constexpr HotKey cast{46, HotKey::commandKey + HotKey::optionKey, {0x4F565232, 2}};

constexpr auto patience = 30s; ///< Of this test, with a busy machine.

template <typename Condition>
void waitUntil(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error("what this test waits for does not come");
        std::this_thread::sleep_for(1ms);
    }
}

void run(const std::string &command)
{
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("needed for this test: " + command);
}

/// A main queue that runs when the test says so, on the test's thread.
class MainQueue : public Dispatch
{
public:
    void onMain(Task task) override
    {
        const std::lock_guard lock(mutex);
        tasks.push_back(std::move(task));
    }
    void onMainAfter(std::chrono::milliseconds, Task) override { std::abort(); }
    std::unique_ptr<RepeatingTask> repeatOnMain(std::chrono::milliseconds, Task) override { std::abort(); }
    void concurrently(QualityOfService, Task) override { std::abort(); }
    void concurrentlyAfter(std::chrono::milliseconds, Task) override { std::abort(); }
    std::unique_ptr<ConcurrentQueue> makeConcurrentQueue(const std::string &) override { std::abort(); }

    /// Runs what is there.
    void run()
    {
        std::vector<Task> due;
        {
            const std::lock_guard lock(mutex);
            due.swap(tasks);
        }
        for (const auto &task : due)
            task();
    }

private:
    std::mutex mutex;
    std::vector<Task> tasks;
};

/// Another program on the same server.
class Stranger
{
public:
    explicit Stranger(const std::string &display) : xcb(xcb_connect(display.c_str(), nullptr))
    {
        root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    }
    ~Stranger() { xcb_disconnect(xcb); }

    Stranger(const Stranger &) = delete;
    Stranger &operator=(const Stranger &) = delete;

    bool grab(xcb_keycode_t key, unsigned int modifiers) const
    {
        const auto request = xcb_grab_key_checked(xcb, 0, root, static_cast<std::uint16_t>(modifiers), key,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        return isDone(request);
    }
    void ungrab(xcb_keycode_t key, unsigned int modifiers) const
    {
        EXPECT_TRUE(isDone(xcb_ungrab_key_checked(xcb, key, root, static_cast<std::uint16_t>(modifiers))));
    }

    /// The whole keyboard, as an open menu does.
    bool grabKeyboard() const
    {
        const Reply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
            xcb, xcb_grab_keyboard(xcb, 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC), nullptr));
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }
    void ungrabKeyboard() const { EXPECT_TRUE(isDone(xcb_ungrab_keyboard_checked(xcb, XCB_CURRENT_TIME))); }

    /// Puts up a window that gets the keys which nobody grabs.
    void takeFocus() const
    {
        const auto window = xcb_generate_id(xcb);
        const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_EXPOSURE;
        xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, root, 0, 0, 100, 100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
        xcb_map_window(xcb, window);
        xcb_flush(xcb);
        const auto shown = next(XCB_EXPOSE); // only what is shown can have it
        EXPECT_TRUE(isDone(xcb_set_input_focus_checked(xcb, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME)));
    }

    /// The next key that is pressed while we have the focus.
    xcb_keycode_t nextKey() const
    {
        return reinterpret_cast<const xcb_key_press_event_t *>(next(XCB_KEY_PRESS).get())->detail;
    }

    /// Makes a key the only one of a modifier.
    void makeModifier(xcb_map_index_t modifier, xcb_keycode_t key) const
    {
        const Reply<xcb_get_modifier_mapping_reply_t> now(
            xcb_get_modifier_mapping_reply(xcb, xcb_get_modifier_mapping(xcb), nullptr));
        const auto each = now->keycodes_per_modifier;
        std::vector<xcb_keycode_t> keys(xcb_get_modifier_mapping_keycodes(now.get()),
                                        xcb_get_modifier_mapping_keycodes(now.get()) + 8 * each);
        std::fill_n(keys.begin() + modifier * each, each, xcb_keycode_t{0});
        keys[static_cast<std::size_t>(modifier * each)] = key;
        const Reply<xcb_set_modifier_mapping_reply_t> done(
            xcb_set_modifier_mapping_reply(xcb, xcb_set_modifier_mapping(xcb, each, keys.data()), nullptr));
        if (!done || done->status != XCB_MAPPING_STATUS_SUCCESS)
            throw std::runtime_error("the modifiers of the X server cannot be changed");
    }

private:
    [[nodiscard]] bool isDone(xcb_void_cookie_t request) const
    {
        const Reply<xcb_generic_error_t> error(xcb_request_check(xcb, request));
        return !error;
    }

    /// The next event of that kind.
    [[nodiscard]] Reply<xcb_generic_event_t> next(std::uint8_t kind) const
    {
        Reply<xcb_generic_event_t> event;
        waitUntil([&] {
            event.reset(xcb_poll_for_event(xcb));
            return event && (event->response_type & 0x7f) == kind;
        });
        return event;
    }

    xcb_connection_t *const xcb;
    xcb_window_t root;
};

class HotKeysX11Test : public ::testing::Test
{
protected:
    explicit HotKeysX11Test(std::vector<std::string> options = {}) : server(std::move(options)) {}

    void installHandler() { installHandler(keys); }

    void installHandler(HotKeysX11 &with)
    {
        handler = with.installHandler([this](const std::optional<HotKeyId> &pressed) {
            EXPECT_EQ(std::this_thread::get_id(), thisThread);
            presses.push_back(pressed.value().id);
            return true;
        });
        ASSERT_TRUE(handler);
    }

    void registerBoth()
    {
        installHandler();
        warmupKey = keys.registerHotKey(warmup);
        castKey = keys.registerHotKey(cast);
        ASSERT_TRUE(warmupKey);
        ASSERT_TRUE(castKey);
    }

    /// Everything that has been pressed, up to now: 1 for W, 2 for M.
    std::vector<std::uint32_t> pressed()
    {
        // What the server has told before it grants the first key is reported before the second is asked for.
        for (int i = 0; i < 2; ++i)
            EXPECT_TRUE(keys.registerHotKey({warmup.keyCode, HotKey::commandKey, {0, 4}}));
        main.run();
        return std::exchange(presses, {});
    }

    void waitForPresses(std::size_t count)
    {
        waitUntil([&] {
            main.run();
            return presses.size() >= count;
        });
    }

    static std::vector<xcb_keysym_t> chord(xcb_keysym_t key) { return {XK_Super_L, XK_Alt_L, key}; }

    /// Types it until it has been noticed: the change of a keyboard takes its time to get round.
    void typeUntilNoticed(xcb_keysym_t key)
    {
        waitUntil([&] {
            typist.type(chord(key));
            main.run();
            return !presses.empty();
        });
    }

    void followsChange(xcb_keysym_t key)
    {
        typeUntilNoticed(key);
        pressed();
    }

    void setLayout(const std::string &layout) const
    {
        run("setxkbmap -display " + server.display() + " -option '' " + layout);
    }

    XServer server;
    Typist typist{server.display()};
    MainQueue main;
    HotKeysX11 keys{main, server.display(), 60s};
    std::unique_ptr<HotKeyHandle> handler, warmupKey, castKey;
    std::vector<std::uint32_t> presses;
    const std::thread::id thisThread = std::this_thread::get_id();

    static constexpr unsigned int superAlt = XCB_MOD_MASK_4 | XCB_MOD_MASK_1; // on this server's keyboard
    static constexpr unsigned int capsLock = XCB_MOD_MASK_LOCK;
    static constexpr unsigned int numLock = XCB_MOD_MASK_2;
    static constexpr unsigned int scrollLock = XCB_MOD_MASK_3; // once it is made one
};

TEST_F(HotKeysX11Test, tellsWhichKeyWasPressed)
{
    registerBoth();
    for (const auto key : {XK_w, XK_m, XK_w})
        typist.type(chord(static_cast<xcb_keysym_t>(key)));
    waitForPresses(3);
    EXPECT_THAT(presses, ElementsAre(1, 2, 1));
}

TEST_F(HotKeysX11Test, theRightHandKeysAreAsGood)
{
    registerBoth();
    typist.type({XK_Super_R, XK_Alt_R, XK_w});
    typist.type({XK_Alt_L, XK_Super_L, XK_w});
    EXPECT_THAT(pressed(), ElementsAre(1, 1));
}

TEST_F(HotKeysX11Test, worksWhileAnotherProgramHasTheFocus)
{
    registerBoth();
    const Stranger stranger(server.display());
    stranger.takeFocus();
    typist.type(chord(XK_w));
    EXPECT_THAT(pressed(), ElementsAre(1));
    typist.type({XK_x});
    xcb_keycode_t key = 0; // the modifiers are the other's, the letters are not
    for (key = stranger.nextKey(); key == typist.keyOf(XK_Super_L) || key == typist.keyOf(XK_Alt_L);)
        key = stranger.nextKey();
    EXPECT_EQ(key, typist.keyOf(XK_x));
}

TEST_F(HotKeysX11Test, worksInEveryStateOfTheLocks)
{
    const Stranger stranger(server.display());
    stranger.makeModifier(XCB_MAP_INDEX_3, typist.keyOf(XK_Scroll_Lock));
    registerBoth();
    const std::array<std::pair<xcb_keysym_t, unsigned int>, 3> locks{
        std::pair{XK_Caps_Lock, capsLock}, {XK_Num_Lock, numLock}, {XK_Scroll_Lock, scrollLock}};
    for (unsigned int state = 0; state < 8; ++state) {
        std::vector<xcb_keysym_t> held;
        unsigned int mask = 0;
        for (std::size_t i = 0; i < locks.size(); ++i) {
            if ((state & 1U << i) != 0) {
                mask |= locks[i].second;
                if (locks[i].first == XK_Scroll_Lock)
                    held.push_back(locks[i].first); // on this keyboard a modifier only while it is down
                else
                    typist.type({locks[i].first});
            }
        }
        for (const auto key : held)
            typist.press(key);
        EXPECT_EQ(typist.modifiers(), mask);
        typist.type(chord(XK_w));
        EXPECT_THAT(pressed(), ElementsAre(1)) << "modifiers " << mask;
        for (const auto key : held)
            typist.release(key);
        for (const auto &[key, bit] : locks) {
            if ((typist.modifiers() & bit) != 0)
                typist.type({key});
        }
    }
}

TEST_F(HotKeysX11Test, doesNotWorkWithAnyModifierMoreOrLess)
{
    setLayout("-layout us -variant altgr-intl");
    registerBoth();
    for (const auto extra : {XK_Shift_L, XK_Shift_R, XK_Control_L, XK_Control_R, XK_ISO_Level3_Shift})
        typist.type({static_cast<xcb_keysym_t>(extra), XK_Super_L, XK_Alt_L, XK_w});
    typist.type({XK_Alt_L, XK_w});
    typist.type({XK_Super_L, XK_w});
    typist.type({XK_Caps_Lock});
    typist.type({XK_Shift_L, XK_Super_L, XK_Alt_L, XK_w});
    typist.type({XK_Caps_Lock});
    typist.type({XK_w});
    EXPECT_THAT(pressed(), IsEmpty());
}

TEST_F(HotKeysX11Test, aKeyPressedWhileAnotherIsHeldMustBeExactAsWell)
{
    registerBoth();
    for (const auto key : {XK_Super_L, XK_Alt_L, XK_w, XK_Shift_L, XK_m}) // the keyboard is ours since W
        typist.press(static_cast<xcb_keysym_t>(key));
    for (const auto key : {XK_w, XK_m, XK_Shift_L, XK_Alt_L, XK_Super_L}) // and no longer when M is let go
        typist.release(static_cast<xcb_keysym_t>(key));
    EXPECT_THAT(pressed(), ElementsAre(1));
    typist.type(chord(XK_w));
    EXPECT_THAT(pressed(), ElementsAre(1));
}

TEST_F(HotKeysX11Test, anotherProgramMayHoldTheWholeKeyboardForAWhile)
{
    registerBoth();
    const Stranger stranger(server.display());
    ASSERT_TRUE(stranger.grabKeyboard());
    typist.type(chord(XK_w));
    stranger.ungrabKeyboard();
    EXPECT_THAT(pressed(), IsEmpty());
    typist.type(chord(XK_w));
    EXPECT_THAT(pressed(), ElementsAre(1));
}

TEST_F(HotKeysX11Test, aKeyOfAnotherProgramIsLeftToItInEveryStateOfTheLocks)
{
    const Stranger stranger(server.display());
    const auto w = typist.keyOf(XK_w);
    ASSERT_TRUE(stranger.grab(w, superAlt | numLock)); // one of four is enough
    installHandler();
    EXPECT_FALSE(keys.registerHotKey(warmup));
    castKey = keys.registerHotKey(cast);
    ASSERT_TRUE(castKey);

    typist.type(chord(XK_w));
    typist.type(chord(XK_m));
    EXPECT_THAT(pressed(), ElementsAre(2));
    for (const auto locks : {0U, capsLock, capsLock | numLock})
        EXPECT_TRUE(stranger.grab(w, superAlt | locks)) << "kept back: " << locks;
}

TEST_F(HotKeysX11Test, whatItHasIsNotAnothersToTake)
{
    registerBoth();
    const Stranger stranger(server.display());
    for (const auto locks : {0U, capsLock, numLock, capsLock | numLock})
        EXPECT_FALSE(stranger.grab(typist.keyOf(XK_w), superAlt | locks)) << locks;
    EXPECT_TRUE(stranger.grab(typist.keyOf(XK_w), superAlt | XCB_MOD_MASK_SHIFT));
}

TEST_F(HotKeysX11Test, givesAKeyBackWithItsHandle)
{
    registerBoth();
    warmupKey.reset();
    const Stranger stranger(server.display());
    const auto w = typist.keyOf(XK_w);
    for (const auto locks : {0U, capsLock, numLock, capsLock | numLock})
        waitUntil([&] { return stranger.grab(w, superAlt | locks); });
    typist.type(chord(XK_w));
    typist.type(chord(XK_m));
    EXPECT_THAT(pressed(), ElementsAre(2)) << "the other key is still ours";
    for (const auto locks : {0U, capsLock, numLock, capsLock | numLock})
        stranger.ungrab(w, superAlt | locks);
    warmupKey = keys.registerHotKey(warmup);
    typist.type(chord(XK_w));
    EXPECT_THAT(pressed(), ElementsAre(1));
}

TEST_F(HotKeysX11Test, givesEverythingBackWhenAllHandlesAreGone)
{
    registerBoth();
    warmupKey.reset();
    castKey.reset();
    handler.reset();
    const Stranger stranger(server.display());
    for (const auto key : {XK_w, XK_m})
        waitUntil([&] { return stranger.grab(typist.keyOf(static_cast<xcb_keysym_t>(key)), superAlt); });
    EXPECT_FALSE(keys.registerHotKey(warmup)) << "without a handler";
}

TEST_F(HotKeysX11Test, aHandlerThatIsGoneIsNotCalled)
{
    registerBoth();
    typist.type(chord(XK_w));
    handler.reset(); // with the press under way, or already on the main queue
    typist.type(chord(XK_w));
    warmupKey.reset();
    castKey.reset();
    const Stranger stranger(server.display());
    waitUntil([&] { return stranger.grab(typist.keyOf(XK_w), superAlt); });
    main.run();
    EXPECT_THAT(presses, IsEmpty());
}

TEST_F(HotKeysX11Test, theSameKeyIsGivenOutOnce)
{
    registerBoth();
    EXPECT_FALSE(keys.registerHotKey({warmup.keyCode, warmup.modifiers, {0, 3}}));
    typist.type(chord(XK_w));
    EXPECT_THAT(pressed(), ElementsAre(1)) << "and stays with who had it first";
}

TEST_F(HotKeysX11Test, keysThatNobodyKnowsAreNotToBeHad)
{
    installHandler();
    EXPECT_FALSE(keys.registerHotKey({999, warmup.modifiers, {0, 3}}));
    EXPECT_FALSE(keys.registerHotKey({warmup.keyCode, 0x200, {0, 3}})) << "a modifier that nobody knows";
}

TEST_F(HotKeysX11Test, aKeyFollowsItsLetterWhenTheLayoutChanges)
{
    registerBoth();
    const auto before = typist.keyOf(XK_w);
    setLayout("-layout fr");
    ASSERT_NE(typist.keyOf(XK_w), before);
    followsChange(XK_w);
    typist.typeKey({XK_Super_L, XK_Alt_L}, before);
    EXPECT_THAT(pressed(), IsEmpty()) << "that is Z now";

    setLayout("-layout us");
    followsChange(XK_w);
    typist.type(chord(XK_w));
    EXPECT_THAT(pressed(), ElementsAre(1));
}

TEST_F(HotKeysX11Test, manyChangesOfTheLayoutDoNoHarm)
{
    registerBoth();
    for (const auto *layout : {"fr", "us", "de", "us", "dvorak", "fr"})
        setLayout(std::string("-layout ") + layout);
    followsChange(XK_w);
    for (int i = 0; i < 3; ++i)
        setLayout("-layout fr");
    typist.type(chord(XK_w));
    EXPECT_THAT(pressed(), ElementsAre(1));
}

TEST_F(HotKeysX11Test, aKeyThatAnotherProgramHasInTheNewLayoutIsLeftToIt)
{
    registerBoth();
    const Stranger stranger(server.display());
    setLayout("-layout fr");
    const auto french = typist.keyOf(XK_w);
    setLayout("-layout us");
    waitUntil([&] { return stranger.grab(french, superAlt); });
    setLayout("-layout fr");
    const auto american = xcb_keycode_t{25};
    waitUntil([&] { return stranger.grab(american, superAlt); }); // given back
    stranger.ungrab(american, superAlt);
    followsChange(XK_m); // which comes after the giving back
    typist.type(chord(XK_w));
    EXPECT_THAT(pressed(), IsEmpty());
    stranger.ungrab(french, superAlt);
    setLayout("-layout us"); // and on the old one it is ours again
    followsChange(XK_w);
}

TEST_F(HotKeysX11Test, whereNoKeyWritesTheLetterTheOneInItsPlaceCounts)
{
    setLayout("-layout ru");
    registerBoth();
    typist.typeKey({XK_Super_L, XK_Alt_L}, 25);
    typist.typeKey({XK_Super_L, XK_Alt_L}, 58);
    EXPECT_THAT(pressed(), ElementsAre(1, 2));
}

TEST_F(HotKeysX11Test, worksInTheSecondOfTwoLayouts)
{
    setLayout("-layout us,ru -option grp:caps_toggle");
    registerBoth();
    typist.type({XK_ISO_Next_Group});
    ASSERT_EQ(typist.group(), 1);
    typist.type(chord(XK_w));
    EXPECT_THAT(pressed(), ElementsAre(1));
    typist.type({XK_Shift_L, XK_Super_L, XK_Alt_L, XK_w});
    EXPECT_THAT(pressed(), IsEmpty());
}

TEST_F(HotKeysX11Test, ofSeveralLayoutsTheOneInEffectSaysWhichKeyItIs)
{
    setLayout("-layout fr,us,dvorak -option grp:caps_toggle");
    registerBoth();
    const std::vector<xcb_keycode_t> places{25, 52, 59}; // each is W in one of them
    const std::vector<xcb_keycode_t> rightOnes{52, 25, 59};
    for (int group = 0; group < 3; ++group) {
        ASSERT_EQ(typist.group(), group);
        for (const auto place : places) {
            typist.typeKey({XK_Super_L, XK_Alt_L}, place);
            const auto expected = place == rightOnes[static_cast<std::size_t>(group)] ? 1U : 0U;
            EXPECT_EQ(pressed().size(), expected) << "group " << group << ", key " << int{place};
        }
        typist.typeKey({XK_Super_L, XK_Alt_L}, group == 0 ? 47 : 58);
        EXPECT_THAT(pressed(), ElementsAre(2)) << "group " << group;
        typist.type({XK_ISO_Next_Group});
    }
}

TEST_F(HotKeysX11Test, modifiersMayChangePlaces)
{
    registerBoth();
    setLayout("-layout us -option altwin:swap_alt_win");
    followsChange(XK_w);
    typist.type({XK_Shift_L, XK_Super_L, XK_Alt_L, XK_w});
    EXPECT_THAT(pressed(), IsEmpty());
}

TEST_F(HotKeysX11Test, aKeyboardWithoutAltHasNoSuchKeyUntilItGetsOne)
{
    const Stranger stranger(server.display());
    installHandler();
    stranger.makeModifier(XCB_MAP_INDEX_1, typist.keyOf(XK_F12));
    EXPECT_FALSE(keys.registerHotKey(warmup));

    setLayout("-layout us");
    warmupKey = keys.registerHotKey(warmup);
    castKey = keys.registerHotKey(cast);
    ASSERT_TRUE(warmupKey && castKey);
    stranger.makeModifier(XCB_MAP_INDEX_1, typist.keyOf(XK_F12));
    waitUntil([&] { return stranger.grab(typist.keyOf(XK_w), superAlt); });
    stranger.ungrab(typist.keyOf(XK_w), superAlt);
    setLayout("-layout us");
    followsChange(XK_w);
}

TEST_F(HotKeysX11Test, aServerThatDiesTakesTheKeysAlongAndNothingElse)
{
    registerBoth();
    typist.type(chord(XK_w));
    waitForPresses(1);
    server.kill();
    EXPECT_FALSE(keys.registerHotKey(cast));
    warmupKey.reset();
    main.run();
    EXPECT_THAT(presses, ElementsAre(1));
    EXPECT_FALSE(keys.installHandler([](const auto &) { return true; }));
}

TEST_F(HotKeysX11Test, aServerThatHangsIsNotWaitedForAndMayAnswerLate)
{
    HotKeysX11 impatient(main, server.display(), 1ms);
    server.suspend();
    installHandler(impatient);
    warmupKey = impatient.registerHotKey(warmup);
    EXPECT_TRUE(warmupKey);
    server.resume();
    typeUntilNoticed(XK_w);
    const Stranger stranger(server.display());
    EXPECT_FALSE(stranger.grab(typist.keyOf(XK_w), superAlt));
    warmupKey.reset();
    waitUntil([&] { return stranger.grab(typist.keyOf(XK_w), superAlt); });
}

TEST_F(HotKeysX11Test, aKeyThatIsNotWantedAnyMoreWhenItIsGrantedIsGivenBack)
{
    HotKeysX11 impatient(main, server.display(), 1ms);
    installHandler(impatient);
    server.suspend();
    warmupKey = impatient.registerHotKey(warmup);
    EXPECT_TRUE(warmupKey);
    warmupKey.reset();
    castKey = impatient.registerHotKey(cast);
    EXPECT_TRUE(castKey);
    server.resume();
    typeUntilNoticed(XK_m); // which was asked for after the other
    const Stranger stranger(server.display());
    EXPECT_TRUE(stranger.grab(typist.keyOf(XK_w), superAlt));
    EXPECT_FALSE(stranger.grab(typist.keyOf(XK_m), superAlt));
}

TEST(HotKeysX11, withoutAServerThereAreNone)
{
    MainQueue main;
    for (const auto *nowhere : {":54321", "no display", "unix:", ":"}) {
        HotKeysX11 keys(main, nowhere, 60s);
        EXPECT_FALSE(keys.registerHotKey(warmup)) << nowhere;
        EXPECT_FALSE(keys.installHandler([](const auto &) { return true; })) << nowhere;
        EXPECT_FALSE(keys.registerHotKey(warmup)) << nowhere;
    }
}

/// A keyboard that repeats fast.
struct HotKeysX11Repetition : HotKeysX11Test
{
    HotKeysX11Repetition() : HotKeysX11Test({"-ardelay", "50", "-arinterval", "10"}) {}
};

/// The presses of which the server tells next; with no other event about, none means a repetition or a release.
std::vector<HotKeyId> nextPresses(KeyGrabsX11 &grabs)
{
    pollfd door{grabs.descriptor(), POLLIN, 0};
    EXPECT_EQ(::poll(&door, 1, std::chrono::milliseconds(patience).count()), 1) << "nothing comes";
    return grabs.takePresses();
}

TEST_F(HotKeysX11Repetition, aKeyThatIsHeldCountsOnce)
{
    KeyGrabsX11 grabs(server.display());
    ASSERT_TRUE(grabs.add(1, warmup));
    for (int i = 0; i < 2; ++i) {
        for (const auto key : chord(XK_w))
            typist.press(key);
        EXPECT_THAT(nextPresses(grabs), ElementsAre(warmup.identifier));
        for (int repetition = 0; repetition < 5; ++repetition) {
            EXPECT_THAT(nextPresses(grabs), IsEmpty());
            grabs.checkHeldKeys();
            EXPECT_TRUE(grabs.isKeyHeld());
        }
        typist.release(XK_w);
        EXPECT_THAT(grabs.takePresses(), IsEmpty());
        typist.press(XK_w); // let go and pressed again, the others held
        std::vector<HotKeyId> again;
        waitUntil([&] {
            again = nextPresses(grabs);
            return !again.empty();
        });
        EXPECT_THAT(again, ElementsAre(warmup.identifier));
        for (const auto key : chord(XK_w))
            typist.release(key);
        waitUntil([&] {
            EXPECT_THAT(grabs.takePresses(), IsEmpty());
            return !grabs.isKeyHeld();
        });
    }
}

TEST_F(HotKeysX11Repetition, aKeyThatIsNotDownAnyMoreIsNotHeld)
{
    KeyGrabsX11 grabs(server.display());
    ASSERT_TRUE(grabs.add(1, warmup));
    for (const auto key : chord(XK_w))
        typist.press(key);
    EXPECT_THAT(nextPresses(grabs), ElementsAre(warmup.identifier));
    EXPECT_TRUE(grabs.isKeyHeld());
    for (const auto key : chord(XK_w))
        typist.release(key);
    grabs.checkHeldKeys(); // before the release is read, as if it had been lost
    EXPECT_FALSE(grabs.isKeyHeld());
}

TEST_F(HotKeysX11Repetition, aKeyThatIsHeldWhileTheLayoutChangesCountsOnce)
{
    registerBoth();
    for (const auto key : chord(XK_w))
        typist.press(key);
    setLayout("-layout de");
    setLayout("-layout us");
    for (const auto key : chord(XK_w))
        typist.release(key);
    EXPECT_THAT(pressed(), ElementsAre(1));
}

/// Modifiers of eight keys, one for each, numbered from 101 on; the letters W and M are keys 11 and 12.
KeyMapX11 keyMap(const std::array<xcb_keysym_t, 8> &modifiers)
{
    std::vector<xcb_keysym_t> symbols(2 * 100);
    symbols[2] = XK_w;
    symbols[3] = XK_W;
    symbols[4] = XK_m;
    symbols[5] = XK_M;
    std::vector<xcb_keycode_t> keys;
    for (std::size_t i = 0; i < modifiers.size(); ++i) {
        symbols[2 * (91 + i)] = modifiers[i];
        keys.push_back(static_cast<xcb_keycode_t>(101 + i));
    }
    return {10, 2, std::move(symbols), keys};
}

constexpr std::array<xcb_keysym_t, 8> ordinary{XK_Shift_L,  XK_Caps_Lock,   XK_Control_L, XK_Alt_L,
                                               XK_Num_Lock, XK_Scroll_Lock, XK_Super_L,   XK_ISO_Level3_Shift};

TEST(KeyMapX11, findsLettersModifiersAndLocks)
{
    const auto map = keyMap(ordinary);
    EXPECT_THAT(map.keys(13), ElementsAre(11));
    EXPECT_THAT(map.keys(46), ElementsAre(12));
    EXPECT_THAT(map.keys(14), IsEmpty());
    EXPECT_EQ(map.modifiers(HotKey::commandKey), XCB_MOD_MASK_4);
    EXPECT_EQ(map.modifiers(HotKey::optionKey), XCB_MOD_MASK_1);
    EXPECT_EQ(map.modifiers(0), 0);
    EXPECT_EQ(map.modifiers(0x1000), std::nullopt);
    EXPECT_THAT(map.lockStates(), UnorderedElementsAre(0x00, 0x02, 0x10, 0x12, 0x20, 0x22, 0x30, 0x32));
}

TEST(KeyMapX11, eachLayoutHasItsOwnKeyForALetter)
{
    const KeyMapX11 map(10, 6, {XK_w,     XK_W,    XK_z,           XK_Z,           XK_comma, XK_less,      // key 10
                                XK_z,     XK_Z,    XK_w,           XK_W,           XK_colon, XK_semicolon, // key 11
                                XK_comma, XK_less, XK_x,           XK_X,           XK_w,     XK_W,         // key 12
                                XK_m,     XK_M,    XK_Cyrillic_em, XK_Cyrillic_EM, 0,        0},           // key 13
                        {});
    EXPECT_THAT(map.keys(13, 0), ElementsAre(10));
    EXPECT_THAT(map.keys(13, 1), ElementsAre(11));
    EXPECT_THAT(map.keys(13, 2), ElementsAre(12));
    EXPECT_THAT(map.keys(46, 1), ElementsAre(13)) << "not there, so that of another layout";
}

TEST(KeyMapX11, locksThatAreNoModifiersNeedNoState)
{
    auto modifiers = ordinary;
    modifiers[4] = modifiers[5] = XK_VoidSymbol;
    EXPECT_THAT(keyMap(modifiers).lockStates(), UnorderedElementsAre(0x00, 0x02));
}

TEST(KeyMapX11, theRightHandKeyWillDo)
{
    auto modifiers = ordinary;
    modifiers[3] = XK_Alt_R;
    EXPECT_EQ(keyMap(modifiers).modifiers(HotKey::optionKey), XCB_MOD_MASK_1);
    modifiers[3] = XK_VoidSymbol;
    EXPECT_EQ(keyMap(modifiers).modifiers(HotKey::optionKey), std::nullopt);
}

TEST(KeyMapX11, anEmptyKeyboardHasOnlyPlaces)
{
    const KeyMapX11 map(8, 0, {}, {});
    EXPECT_THAT(map.keys(13), ElementsAre(25));
    EXPECT_EQ(map.modifiers(HotKey::commandKey), std::nullopt);
    EXPECT_THAT(map.lockStates(), UnorderedElementsAre(0x00, 0x02));
}

} // namespace
} // namespace orvalen
