// The sink of the writers whose output is bytes.
#pragma once

#include <cstddef>
#include <utility>

#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16 {

/// Collects bytes in memory. Belongs to the thread of its writer.
class CBinaryStream : public CInstanceMonitor {
 public:
  /// Begins empty, or behind `data`.
  explicit CBinaryStream(CBinaryData data = {}) : CBinaryStream(std::move(data), Record()) {}
  ~CBinaryStream() override;

  /// Adds bytes at the end.
  void Write(unsigned char byte) { m_data.Append(byte); }
  void Write(const CBinaryData& data) { m_data.Append(data); }
  void Write(const unsigned char* bytes, std::size_t length) { m_data.Append(bytes, length); }

  /// What was written. The result shares the memory until either side changes.
  CBinaryData GetData() const { return m_data; }

 protected:
  CBinaryStream(CBinaryData data, ClassType& record) : CInstanceMonitor(record), m_data(std::move(data)) {}

  CBinaryData m_data;

 private:
  static ClassType& Record() {
    static ClassType& record = FindClass(u"CBinaryStream");
    return record;
  }
};

}  // namespace OvXmlLib16
