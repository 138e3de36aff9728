#include "commands/Program.h"

int main(int argc, char** argv) { return quilon::RunProgram(argc, argv); }
