// settings_writer FILE COUNT: assigns the five settings in turn, COUNT times in all, and prints the number of each
// assignment when its call has returned. Made to be killed in between.
#include "platform/qt/SettingsStoreQt.h"

#include <cstdio>
#include <cstdlib>

#include "tests/platform/SettingsWriter.h"

int main(int argc, char *argv[])
{
    if (argc != 3)
        return 64;
    orvalen::SettingsStoreQt store(argv[1]);
    for (int number = 0; number < std::atoi(argv[2]); ++number) {
        orvalen::test::assign(store, number);
        std::printf("%d\n", number);
        std::fflush(stdout);
    }
}
