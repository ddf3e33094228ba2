// The subcommands of the tessaline program.
#pragma once

namespace tessaline::cli {

// Parses the command line and runs the subcommand: 0 done, 1 bad input
// (one line on standard error naming the file or argument), 2 usage error.
int Run(int argc, char** argv);

}  // namespace tessaline::cli
