#include <iostream>

#include "Dump.h"

int main(int argc, char** argv) { return dump::RunDump(argc, argv, std::cout, std::cerr); }
