#include "CommandLine.h"

int main(int argc, char** argv) { return zyl::RunCommandLine(argc, argv); }
