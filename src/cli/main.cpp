#include "cli/cli.h"

#include <iostream>

int main(int argc, char** argv) {
    sylvane::cli::Arguments args(argv + 1, argv + argc);
    return sylvane::cli::Executer(args, std::cout, std::cerr);
}
