// Threads that read different objects at the same time, from the very first use of their classes: threads [documents]

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>
#include <vector>

#include "Readings.h"

using namespace readings;

constexpr int kReadingsInDocument = 200;

/// The temperatures of a document are its number and nothing else, so that a mix-up shows.
CBinaryData MakeDocument(int number) {
  std::string text = "<readings xmlns='urn:example:readings'>";
  for (int i = 0; i < kReadingsInDocument; ++i) {
    text += "<reading at='2024-05-14T08:30:00Z'><celsius>" + std::to_string(number) + ".25</celsius></reading>";
  }
  text += "</readings>";
  return CBinaryData(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

/// Reads a document, writes it, reads that, and says whether it holds what it should. One object is one thread's own;
/// the context, which nobody changes, is everybody's.
bool Serve(const CBinaryData& document, int number, const CSerializationContext& context) {
  const CSmartPtr<CReadings> first(new CReadings), second(new CReadings);
  first->FromXmlStream(document, context);
  second->FromXmlStream(first->ToXmlStream(true, true, XmlEncoding_UTF8, EOLType_LF, context), context);
  double sum = 0;
  for (const CReading* reading : second->GetReadings()) sum += reading->celsius;
  return sum == kReadingsInDocument * (number + 0.25);
}

/// Lets `count` threads take documents until there are none left; returns how many were right.
int ServeAll(const std::vector<CBinaryData>& documents, int count, const CSerializationContext& context) {
  std::atomic<std::size_t> next = 0;
  std::atomic<int> right = 0;
  std::vector<std::jthread> threads;
  for (int i = 0; i < count; ++i) {
    threads.emplace_back([&] {
      try {
        for (std::size_t n = next++; n < documents.size(); n = next++) {
          if (Serve(documents[n], static_cast<int>(n), context)) ++right;
        }
      } catch (const COvException& failure) {
        std::cerr << ToUtf8(failure.GetFullMessage()) + "\n";
      }
    });
  }
  threads.clear();  // waits for all
  return right;
}

int main(int argc, char** argv) {
  CXmlObjectBase::Register(16, 1);
  std::vector<CBinaryData> documents;
  for (int i = 0, count = argc > 1 ? std::atoi(argv[1]) : 200; i < count; ++i) documents.push_back(MakeDocument(i));
  const CSerializationContext context;
  bool isRight = true;
  for (const int threads : {8, 2, 1}) {
    const auto start = std::chrono::steady_clock::now();
    const int right = ServeAll(documents, threads, context);
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    std::cout << threads << " threads: " << right << " of " << documents.size()
              << " documents read, written and read in " << taken.count() << " ms\n";
    isRight = isRight && right == static_cast<int>(documents.size());
  }
  return isRight ? 0 : 1;
}
