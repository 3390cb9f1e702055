// Writes the orders document of the benchmarks to standard output. Usage: write_orders BYTES

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/OrdersDocument.h"

int main(int argc, char** argv) {
  const std::size_t wantedBytes = argc == 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
  if (wantedBytes == 0) {
    std::fputs("usage: write_orders BYTES\n", stderr);
    return 2;
  }
  const std::string document = OvXmlLib16::bench::MakeOrdersDocument(wantedBytes);
  const bool written = std::fwrite(document.data(), 1, document.size(), stdout) == document.size();
  return written && std::fflush(stdout) == 0 ? 0 : 3;
}
