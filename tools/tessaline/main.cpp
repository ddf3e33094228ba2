// tessaline: analyse, draw and keep cross-sections from the command line.
#include "commands.h"

int main(int argc, char** argv) {
  return tessaline::cli::Run(argc, argv);
}
