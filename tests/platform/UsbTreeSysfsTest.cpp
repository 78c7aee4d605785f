#include "platform/linux/UsbTreeSysfs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <sys/stat.h>

#include "tests/support/SysfsTree.h"

namespace orvalen {
namespace {

namespace fs = std::filesystem;
using test::SysfsTree;

/// The tree in words: (name below below), "-" for what has no name.
void describe(const std::vector<UsbNode> &nodes, std::string &text)
{
    for (const auto &node : nodes) {
        text += "(" + node.name.value_or("-");
        describe(node.items, text);
        text += ")";
    }
}

std::string treeBelow(const std::string &root)
{
    std::string text;
    describe(UsbTreeSysfs(root).read(), text);
    return text;
}

std::string treeOf(const char *description)
{
    const SysfsTree tree(description);
    return treeBelow(tree.root());
}

/// As the kernel lays it out: the folder itself holds links alone.
constexpr const char *laptop = R"(
[devices/pci0000:00/0000:00:14.0/usb1]
product = xHCI Host Controller
manufacturer = Linux 6.1.0-13-amd64 xhci-hcd
idVendor = 1d6b
bDeviceClass = 09
devpath = 0
[devices/pci0000:00/0000:00:14.0/usb1/1-0:1.0]
bInterfaceClass = 09
[devices/pci0000:00/0000:00:14.0/usb1/1-3]
product = USB2.0 Hub
bDeviceClass = 09
[devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3.2]
product = Galaxy Tab S9
manufacturer = SAMSUNG
[devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3.2/1-3.2:1.0]
interface = MTP
[devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3.1]
product = USB2.0 Hub
[devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3.1/1-3.1.4]
product = iPad
manufacturer = Apple Inc.
[devices/pci0000:00/0000:00:14.0/usb1/1-10]
manufacturer = Nameless Works
[devices/pci0000:00/0000:00:14.0/usb1/1-2]
product = SAMSUNG_Android
[devices/pci0000:00/0000:00:14.0/usb2]
product = xHCI Host Controller
[bus/usb/devices]
usb1 -> ../../../devices/pci0000:00/0000:00:14.0/usb1
usb2 -> ../../../devices/pci0000:00/0000:00:14.0/usb2
1-0:1.0 -> ../../../devices/pci0000:00/0000:00:14.0/usb1/1-0:1.0
1-2 -> ../../../devices/pci0000:00/0000:00:14.0/usb1/1-2
1-3 -> ../../../devices/pci0000:00/0000:00:14.0/usb1/1-3
1-10 -> ../../../devices/pci0000:00/0000:00:14.0/usb1/1-10
1-3.1 -> ../../../devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3.1
1-3.2 -> ../../../devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3.2
1-3.2:1.0 -> ../../../devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3.2/1-3.2:1.0
1-3.1.4 -> ../../../devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3.1/1-3.1.4
)";

TEST(UsbTreeSysfs, aLaptopWithAHubInAHub)
{
    const SysfsTree tree(laptop);
    EXPECT_EQ(treeBelow(tree.root() + "/bus/usb/devices"),
              "(xHCI Host Controller(SAMSUNG_Android)(USB2.0 Hub(USB2.0 Hub(iPad))(Galaxy Tab S9))(-))"
              "(xHCI Host Controller)");
}

TEST(UsbTreeSysfs, busesAndPortsAreInTheOrderOfTheirNumbers)
{
    EXPECT_EQ(treeOf(R"(
        [usb10]
        product = ten
        [usb2]
        product = two
        [2-11]
        product = 11
        [2-2]
        product = 2
        [2-2.10]
        product = 2.10
        [2-2.9]
        product = 2.9
        [10-1]
        product = 1)"),
              "(two(2(2.9)(2.10))(11))(ten(1))");
}

TEST(UsbTreeSysfs, twoOfAKindAreTwo)
{
    EXPECT_EQ(treeOf("[usb1]\n[1-1]\nproduct = iPad\n[1-2]\nproduct = iPad"), "(-(iPad)(iPad))");
}

TEST(UsbTreeSysfs, aDeviceWhoseHubIsGoneHangsFromTheNextThingAbove)
{
    EXPECT_EQ(treeOf("[usb1]\nproduct = bus\n[1-1.2.3]\nproduct = iPad\n[1-1.2.4]\nproduct = mouse"),
              "(bus(iPad)(mouse))");
    EXPECT_EQ(treeOf("[1-1.2]\nproduct = iPad\n[1-1.2.1]\nproduct = mouse\n[2-1]\nproduct = other"),
              "(iPad(mouse))(other)");
}

TEST(UsbTreeSysfs, whatHasNoNameOfADeviceIsNone)
{
    for (const auto *const name :
         {"usb",     "usb1a",    "usb-1",         "usb 1",         "usb01",          "Usb1", "1",      "1-",
          "-1",      "1-1.",     "1-.1",          "1--1",          "1-1-1",          "1.1",  "1-1..2", "1-1:1.0",
          "1-0:1.0", "usb1:1.0", "01-1",          "1-01",          "1-1 ",           " 1-1", "1-1x",   "x1-1",
          "1-+1",    "1-0x1",    "99999999999-1", "1-99999999999", "usb99999999999", "iPad"}) {
        SysfsTree tree;
        tree.write(std::string(name) + "/product", "iPad");
        EXPECT_EQ(treeBelow(tree.root()), "") << name;
    }
}

TEST(UsbTreeSysfs, aNameIsWhatTheDeviceSays)
{
    const SysfsTree tree("[usb1]");
    const auto nameFor = [&](const std::string &contents) {
        std::ofstream(tree.path("usb1/product"), std::ios::binary) << contents;
        return UsbTreeSysfs(tree.root()).read().front().name;
    };
    EXPECT_EQ(nameFor("iPad\n"), "iPad");
    EXPECT_EQ(nameFor("iPad"), "iPad");
    EXPECT_EQ(nameFor(" iPad  \n"), " iPad  ");
    EXPECT_EQ(nameFor("iPad\n\n"), "iPad\n"); // one line end is the kernel's
    EXPECT_EQ(nameFor("i\x1BP\tad\r\n"), "i\x1BP\tad\r");
    EXPECT_EQ(nameFor("iPad\xFF\xC3\n"), "iPad\xFF\xC3");
    EXPECT_EQ(nameFor(std::string("i\0Pad\n", 6)), std::string("i\0Pad", 5));
    EXPECT_EQ(nameFor("\n"), "");
    EXPECT_EQ(nameFor(""), "");
    std::string longest; // a USB string holds 126 letters
    for (int i = 0; i < 126; ++i)
        longest += "板";
    EXPECT_EQ(nameFor(longest + "\n"), longest);
    EXPECT_EQ(nameFor(std::string(1'000'000, 'x'))->find_first_not_of('x'), std::string::npos);
}

TEST(UsbTreeSysfs, withoutAProductThereIsNoName)
{
    EXPECT_EQ(treeOf("[usb1]\nmanufacturer = SAMSUNG\nserial = iPad"), "(-)");
}

TEST(UsbTreeSysfs, whatIsNoFileIsNoProduct)
{
    const SysfsTree tree(
        "[usb1]\nproduct/\n[1-1]\nproduct = iPad\n[1-2]\nproduct -> nowhere\n[1-3]\nproduct -> product");
    ASSERT_EQ(::mkfifo(tree.path("1-4").c_str(), 0600), 0);
    fs::create_directory(tree.path("1-5"));
    ASSERT_EQ(::mkfifo(tree.path("1-5/product").c_str(), 0600), 0); // who opens it to read waits for a writer
    fs::create_directory(tree.path("1-6"));
    fs::create_symlink("/dev/zero", tree.path("1-6/product"));
    EXPECT_EQ(treeBelow(tree.root()), "(-(iPad)(-)(-)(-)(-)(-))");
}

TEST(UsbTreeSysfs, aDeviceThatVanishedHasNoName)
{
    EXPECT_EQ(treeOf("[.]\nusb1 -> devices/usb1\n1-1 -> devices/1-1\n[devices/usb1]\nproduct = bus"), "(bus(-))");
}

TEST(UsbTreeSysfs, withoutDevicesOrWithoutTheFolderThereIsNothing)
{
    EXPECT_EQ(treeOf(""), "");
    EXPECT_EQ(treeBelow("/nonexistent"), "");
    EXPECT_EQ(treeBelow(""), "");
    EXPECT_EQ(treeBelow("/dev/null"), "");
    SysfsTree tree;
    tree.makeHang("pipe");
    EXPECT_EQ(treeBelow(tree.root() + "/pipe"), "");
}

TEST(UsbTreeSysfs, theSystemsOwnTreeHasAllItsBuses)
{
    std::size_t buses = 0;
    std::error_code missing; // in a container, say
    for (const auto &entry : fs::directory_iterator("/sys/bus/usb/devices", missing))
        buses += entry.path().filename().string().starts_with("usb");
    EXPECT_EQ(UsbTreeSysfs().read().size(), buses);
}

TEST(UsbTreeSysfs, devicesMayComeAndGoWhileItReads)
{
    const SysfsTree tree("[usb1]\nproduct = bus");
    const std::jthread hands([&](const std::stop_token &stop) {
        for (int round = 0; !stop.stop_requested(); ++round) {
            const auto hub = tree.path("1-" + std::to_string(round % 3 + 1));
            const auto device = tree.path("1-" + std::to_string(round % 3 + 1) + ".1");
            for (const auto &folder : {hub, device}) {
                fs::create_directory(folder);
                std::ofstream(folder / "product") << "iPad\n";
            }
            fs::remove_all(hub);
            fs::remove_all(device);
        }
    });
    for (int i = 0; i < 2000; ++i) {
        const auto buses = UsbTreeSysfs(tree.root()).read();
        ASSERT_EQ(buses.size(), 1U);
        ASSERT_EQ(buses.front().name, "bus");
        for (const auto &device : buses.front().items)
            ASSERT_TRUE(device.name.value_or("iPad") == "iPad" || device.name->empty());
    }
}

} // namespace
} // namespace orvalen
