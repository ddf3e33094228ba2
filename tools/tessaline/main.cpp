// tessaline: analyse, draw and keep cross-sections from the command line.
#if defined(__GLIBC__) || defined(__linux__)
#include <malloc.h>
#endif

#include "commands.h"

int main(int argc, char** argv) {
#if defined(M_TRIM_THRESHOLD) && defined(M_TOP_PAD)
  // The torsion solves allocate and free a few megabytes per section; the
  // C library would hand that memory back to the system after every one
  // and fault it in again (a quarter of a table's CPU time). Keep it.
  mallopt(M_TRIM_THRESHOLD, 256 << 20);
  mallopt(M_TOP_PAD, 16 << 20);
#endif
  return tessaline::cli::Run(argc, argv);
}
