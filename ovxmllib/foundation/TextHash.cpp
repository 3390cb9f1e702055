#include "ovxmllib/foundation/TextHash.h"

#include <random>

namespace OvXmlLib16 {

std::uint64_t GetHashSeed() {
  static const std::uint64_t seed = [] {
    std::random_device device;
    return (std::uint64_t{device()} << 32) | device();
  }();
  return seed;
}

}  // namespace OvXmlLib16
