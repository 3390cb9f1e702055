// Counts the instances of classes and reports at unload what was left behind.
#pragma once

#include <cstdint>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// Base of the library's heap-living classes: per class name it knows how many instances exist and how many were made.
///
/// Counting takes no lock and touches no memory that another thread writes, so it may stand in the hottest constructor:
/// each thread counts for itself, and DumpState adds the threads up. A class that is made often finds its record once
/// and hands it to the constructor:
///
///     CFoo() : CInstanceMonitor(Record()) {}
///     static ClassType& Record() { static ClassType& record = FindClass(u"CFoo"); return record; }
///
/// A copy counts as an instance of its own; assignment leaves both sides what they are.
class OVXMLLIB_API CInstanceMonitor {
 public:
  /// What is known of one class. Records live until the process ends.
  struct ClassType;

  /// Counts an instance of `className`; finding the record takes a lock.
  explicit CInstanceMonitor(const WChar* className);
  CInstanceMonitor(const CInstanceMonitor& other) noexcept;
  CInstanceMonitor& operator=(const CInstanceMonitor&) noexcept { return *this; }
  virtual ~CInstanceMonitor();

  /// The report: a head line, then a line a class in the order of first appearance, each but the last ended by "\n":
  /// "--> CFoo = 1/2" for a class of which 1 of 2 instances is left, "    CFoo = 0/2" where none is left. While other
  /// threads make instances the figures are those of some moment during the call.
  static WString DumpState();

  /// Empties the report: counting starts anew. For use at unload, when nothing else runs.
  static void Cleanup();

 protected:
  /// Counts an instance of the class with this record.
  explicit CInstanceMonitor(ClassType& record) noexcept;

  /// The record of a class name, made at its first use. Takes a lock.
  static ClassType& FindClass(const WChar* className);

  /// \name For an owner of many instances, which counts them and gives their memory back without destroying each
  /// \{
  /// The monitor has no use for its own word in such an instance, and lends it to the class.
  struct CountedByOwner {
    const void* word;
  };
  explicit CInstanceMonitor(CountedByOwner lent) noexcept : m_word(lent.word) {}
  const void* GetLentWord() const noexcept { return m_word; }
  /// Counts `count` instances at once.
  static void Remember(ClassType& record, std::int64_t count) noexcept;
  /// Takes them off.
  static void Forget(ClassType& record, std::int64_t count) noexcept;
  /// \}

 private:
  union {
    ClassType* m_pct;    // not owned
    const void* m_word;  // where the owner counts
  };
};

}  // namespace OvXmlLib16
