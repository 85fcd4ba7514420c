// palvor: merges partial suffix arrays into one global suffix order.

#include "cli/command.h"

int main(int argc, char** argv) { return cli::runCommand(argc, argv); }
