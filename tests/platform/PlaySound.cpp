// play_sound FOLDER: plays the sounds whose names come in on standard input, one a line, with the theme in FOLDER, and
// repeats each name when its call has returned. Ends with its input.
#include <iostream>
#include <string>

#include "platform/linux/SoundsCanberra.h"

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 64;
    orvalen::SoundsCanberra sounds(argv[1]);
    for (std::string name; std::getline(std::cin, name);) {
        sounds.play(name);
        std::cout << name << std::endl;
    }
}
