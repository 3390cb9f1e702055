// Big integers, each operation as a ratio to the same work done by GMP.

#include <benchmark/benchmark.h>
#include <gmp.h>

#include <cstddef>
#include <memory>
#include <string>

#include "bench/Comparison.h"
#include "ovxmllib/values/BigInteger.h"

namespace {

using namespace OvXmlLib16;

using bench::AddComparison;

std::string Digits(std::size_t count, unsigned seed) {
  std::string digits(count, '9');
  for (char& digit : digits) digit = static_cast<char>('1' + (seed = seed * 1664525 + 1013904223) / 65536 % 9);
  return digits;
}

class GmpInteger {
 public:
  GmpInteger() { mpz_init(m_value); }
  explicit GmpInteger(const std::string& digits) { mpz_init_set_str(m_value, digits.c_str(), 10); }
  GmpInteger(const GmpInteger&) = delete;
  GmpInteger& operator=(const GmpInteger&) = delete;
  ~GmpInteger() { mpz_clear(m_value); }

  mpz_ptr Get() { return m_value; }

 private:
  mpz_t m_value;
};

using GmpOperation = void (*)(mpz_ptr, mpz_srcptr, mpz_srcptr);
using OwnOperation = CBigInteger (*)(const CBigInteger&, const CBigInteger&);

void AddArithmetic(const std::string& work, std::size_t aDigits, std::size_t bDigits, GmpOperation gmp,
                   OwnOperation own) {
  const std::string a = Digits(aDigits, 1), b = Digits(bDigits, 2);
  AddComparison(
      work + std::to_string(bDigits), aDigits + bDigits,
      [gmp, a = std::make_shared<GmpInteger>(a), b = std::make_shared<GmpInteger>(b)] {
        GmpInteger result;
        gmp(result.Get(), a->Get(), b->Get());
        benchmark::DoNotOptimize(result.Get());
      },
      "CBigInteger",
      [own, a = CBigInteger::FromUtf8(a), b = CBigInteger::FromUtf8(b)] { benchmark::DoNotOptimize(own(a, b)); });
}

void AddIntegerText(std::size_t digits) {
  const std::string text = Digits(digits, 3);
  const std::string suffix = std::to_string(digits);
  AddComparison(
      "read" + suffix, digits, [text] { benchmark::DoNotOptimize(GmpInteger(text).Get()); }, "CBigInteger",
      [wide = ToWide(text)] { benchmark::DoNotOptimize(CBigInteger(WStringView(wide))); });
  AddComparison(
      "print" + suffix, digits,
      [value = std::make_shared<GmpInteger>(text), out = std::make_shared<std::string>(digits + 2, '\0')] {
        benchmark::DoNotOptimize(mpz_get_str(out->data(), 10, value->Get()));
      },
      "CBigInteger",
      [value = CBigInteger::FromUtf8(text), out = std::make_shared<WString>()] {
        out->clear();
        value.AppendTo(*out);
        benchmark::DoNotOptimize(out->data());
      });
}

}  // namespace

int main(int argc, char** argv) {
  for (const std::size_t digits : {18, 100, 1'000, 10'000}) {
    AddArithmetic("multiply", digits, digits, mpz_mul,
                  [](const CBigInteger& a, const CBigInteger& b) { return a * b; });
    AddArithmetic("divide", 2 * digits, digits, mpz_tdiv_q,
                  [](const CBigInteger& a, const CBigInteger& b) { return a / b; });
    AddArithmetic("add", digits, digits, mpz_add, [](const CBigInteger& a, const CBigInteger& b) { return a + b; });
    AddIntegerText(digits);
  }
  return bench::RunComparisons(argc, argv);
}
