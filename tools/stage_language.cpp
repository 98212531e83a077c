// Turns a language file from its source form (UTF-8) into the form in which the program reads it: code
// page 936 with CR LF. A character that the code page lacks ends the build.
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "shell/textcodec.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: stage_language SOURCE TARGET\n";
        return 2;
    }
    std::ifstream source(argv[1], std::ios::binary);
    std::ofstream target(argv[2], std::ios::binary);
    int number = 0;
    for (std::string line; std::getline(source, line);) {
        ++number;
        if (ThroughGbk(line) != line) {
            std::cerr << argv[1] << ':' << number << ": a character outside of code page 936\n";
            return 1;
        }
        target << GbkFromUtf8(line) << "\r\n";
    }
    target.flush();
    if (number == 0 || !target) {
        std::cerr << argv[1] << " can't be turned into " << argv[2] << '\n';
        return 1;
    }
    return 0;
}
