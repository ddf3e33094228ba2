namespace tessaline::cli {
int Run(int, char**) {
  return 0;
}
}  // namespace tessaline::cli
