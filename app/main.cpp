// Process entry: parses the command line and drives one conversion.
#include <cstdio>

int main(int argc, char** argv) {
  (void)argv;
  if (argc < 2) {
    std::printf("usage: dm2020 <input file> <output file> <format> <parameters>\n");
    return 1;
  }
  return 0;
}
